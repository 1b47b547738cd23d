#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// A language file as it is written, and what the program reads from it.

struct Finding {
  int line = 0;         // in the file, from 1 on
  std::string message;  // begins with the number of the text if it is about a text
  bool remark = false;  // worth a look, but the file may be right
};

struct LanguageFile {
  struct Entry {
    int line = 0;
    std::string text;
  };

  int number = 0;                  // of the language, 0 to 31
  std::vector<std::string> lines;  // without their ends; at least one
  bool has_section = false;        // without the section the program does not load the file
  std::map<int, Entry> texts;      // by number; the file may have them in another order
  std::vector<Finding> findings;

  /// Reads the file. Notes where its name, its lines and their order are not what the program
  /// expects. Returns 0; EINVAL for a name that the program does not look for; ENAMETOOLONG for a
  /// folder whose path is too long for the program; ENOMEM; or the errno of opening the file.
  /// Sets `ProgramDir` to the folder of the file.
  int read(const std::string& path);

  /// Returns a text, or an empty text if the file does not have it.
  std::string text(int id) const;

  void note(int line, const std::string& message) { findings.push_back({line, message}); }

  /// Notes something about a text, on its line. If the text is missing, notes it on the line of
  /// the next text.
  void note_text(int id, const std::string& message, bool remark = false);
};

/// Whether the text is valid UTF-8 without control characters.
bool is_clean(std::string_view text);

/// Returns the texts of all languages in `ProgramDir`, English first, up to the first number
/// without a language file. Each language has `text_count` texts.
std::vector<std::vector<std::string>> load_languages();
