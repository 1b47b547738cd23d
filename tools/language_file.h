#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// A language file as it is written, beside what the program makes of it.

struct Finding {
  int line = 0;         // in the file, from 1 on
  std::string message;  // begins with the number of the text if it is about one
  bool remark = false;  // worth a look, but the file may be right
};

struct LanguageFile {
  struct Entry {
    int line = 0;
    std::string text;
  };

  int number = 0;                    // of the language
  std::vector<std::string> lines;    // without their ends; one at least
  bool has_section = false;          // otherwise the program does not load the file
  std::map<int, Entry> texts;        // by number, in whatever order they stand
  std::map<int, std::string> names;  // of the texts that the program uses, in lang/text_ids.h
  std::vector<Finding> findings;

  /// Reads the file and notes where its name, its lines and their order are not what the program
  /// expects. Returns 0; EINVAL for a name that the program does not look for, ENAMETOOLONG for a
  /// folder that it could not be in, ENOMEM, or the errno of opening the file. Sets `ProgramDir`.
  int read(const std::string& path);

  /// A text, empty where the file does not have it.
  std::string text(int id) const;

  void note(int line, const std::string& message) { findings.push_back({line, message}); }

  /// Notes something about a text, on its line or, where it has none, on the line in its place.
  void note_text(int id, const std::string& message, bool remark = false);
};

/// Valid UTF-8 without control characters.
bool is_clean(std::string_view text);

/// The texts of the languages in the source tree, English first; `text_count` of each. Sets
/// `ProgramDir`.
std::vector<std::vector<std::string>> load_shipped();
