#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

/// A language file, taken apart into the section [Harrier] and the bytes of everybody else.
///
/// Sections begin where the loader of the texts finds them. The section [Harrier] ends after its
/// last line that begins with "String". Blank lines and remarks between that line and the next
/// section may belong to the next section, so they are not ours. No program reads a second section
/// [Harrier], so it is not ours either.
struct LanguageParts {
  std::string before = {};   // up to the section, or the whole file without it
  std::string section = {};  // with its header; empty when there is none
  std::string after = {};    // the rest
  int sections = 0;          // of any program that has a section in such files
  bool has_nul = false;      // then the parts are not complete
  bool open_header = false;  // the last line begins with "[" and has no line end
};

/// Takes the file `path` apart, and notes it as read (`config/known_files.h`). Returns 0 or errno;
/// EINVAL for what is no regular file.
int read_language_parts(const std::string& path, LanguageParts& parts);

/// Returns the file with the lines of `section` in the place of its own section, or at its end when
/// it has none. The lines get the line end of the old header, or of the last line of the file. A
/// last line without a line end gets one before a new section.
std::string with_section(const LanguageParts& parts, std::string_view section);
