#include "merge/language_parts.h"

#include <cerrno>

#include "config/known_files.h"
#include "config/line_reader.h"
#include "lang/lang_text.h"

namespace {

/// Puts the pieces of a file into its parts, one after the other.
class Sorter {
 public:
  explicit Sorter(LanguageParts& parts) : parts_(parts) {}

  /// `continues` means that the line began with an earlier piece.
  void add(std::string_view piece, bool continues) {
    const int program = section_program(piece);
    if (program != 0) ++parts_.sections;
    parts_.open_header = piece.starts_with('[') && !piece.ends_with('\n');
    if (program == harrier && parts_.section.empty()) {
      parts_.section = piece;
      within_ = true;
      return;
    }
    if (program != 0 || (!continues && piece.starts_with('['))) finish();
    if (!within_) {
      (parts_.section.empty() ? parts_.before : parts_.after) += piece;
      return;
    }
    if (!continues) is_text_ = piece.starts_with("String");
    undecided_ += piece;
    if (!is_text_) return;
    parts_.section += undecided_;
    undecided_.clear();
  }

  /// Ends the section. What no text has followed is not part of it.
  void finish() {
    parts_.after += undecided_;
    undecided_.clear();
    within_ = false;
  }

 private:
  LanguageParts& parts_;
  std::string undecided_;  // lines since the last text
  bool within_ = false;    // the section
  bool is_text_ = false;   // the line that goes on
};

}  // namespace

int read_language_parts(const std::string& path, LanguageParts& parts) {
  parts = {};
  LineReader file(path.c_str());
  if (!file.opened()) return file.error();
  const struct stat info = file.identify();
  if (!S_ISREG(info.st_mode)) return EINVAL;
  Sorter sorter(parts);
  char line[language_line_limit + 1];
  for (std::size_t length; file.next(line, language_line_limit, length);) {
    parts.has_nul = parts.has_nul || length != file.piece_size();
    sorter.add({line, length}, file.continues());
  }
  sorter.finish();
  note_read(path, file.error(), info);
  return file.error();
}

std::string with_section(const LanguageParts& parts, std::string_view section) {
  const bool has_own = !parts.section.empty();
  const std::string& model = has_own ? parts.section : parts.before;
  const std::size_t end = has_own ? model.find('\n') : model.rfind('\n');
  const bool windows = end != std::string::npos && end > 0 && model[end - 1] == '\r';
  const std::string_view line_end = windows ? "\r\n" : "\n";

  std::string file = parts.before;
  if (!has_own && !file.ends_with('\n')) file += line_end;
  while (!section.empty()) {
    const std::size_t next = section.find('\n');
    std::string_view line = section.substr(0, next);
    section.remove_prefix(next == std::string_view::npos ? section.size() : next + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    file.append(line).append(line_end);
  }
  return file + parts.after;
}
