#include "check/language.h"

#include <cerrno>
#include <climits>
#include <utility>

#include "check/finding.h"
#include "check/nearest.h"
#include "config/line_reader.h"
#include "lang/lang_text.h"
#include "lang/text_ids.h"
#include "lang/text_places.h"
#include "tui/format.h"

namespace {

constexpr std::string_view header = "[Harrier]";

/// The texts of a file while they are read.
struct Texts {
  std::string shown = {};  // what findings call the file
  int last_line = 0;       // of the last text that was stored, 0 for none
  int next = 0;            // the number after it
  int stopped_at = 0;      // the line that is not the next text, 0 for none
  std::string stop = {};   // what it says
};

Texts texts;

std::string key_of(int number) { return format("String%03d", number); }

void add_text(Class kind, const ReadText& text, std::string_view before) {
  add_finding(kind, texts.shown, text.line,
              {.section = "Harrier",
               .key = key_of(text.number),
               .before = std::string(before),
               .after = LangText[text.number]});
}

/// A text that has just been stored. Numbers that no screen shows do not matter.
void check_stored(const ReadText& text) {
  if (text::find_row(text.number) == nullptr) return;
  std::string_view raw = text.bytes.substr(text.bytes.find('=') + 1);
  raw = raw.substr(0, raw.find_last_not_of(" \t") + 1);
  if (raw == format("\"%s\"", LangText[text.number])) return;
  if (raw.starts_with('"')) raw.remove_prefix(1);
  if (raw.ends_with('"')) raw.remove_suffix(1);
  const bool cut = raw.size() > text_size - 1;
  add_text(cut ? Class::language_cut : Class::language_quotes, text, raw);
}

void listen_to_text(const ReadText& text) {
  if (!text.stored) {
    texts.stopped_at = text.line;
    texts.stop = text.bytes;
    return;
  }
  check_stored(text);
  texts.last_line = text.line;
  texts.next = text.number + 1;
}

/// A line without its line end.
std::string_view without_end(std::string_view line) {
  return line.substr(0, line.find_first_of("\r\n"));
}

/// A line that is the header, or that looks like it.
struct Header {
  int line = 0;  // 0 when there is no such line
  std::string text = {};
  bool ends = false;  // with a line feed
};

Header find_header(const std::string& path) {
  LineReader file(path.c_str());
  char line[language_line_limit + 1];
  for (std::size_t length; file.next(line, language_line_limit, length);) {
    const std::string_view whole(line, length);
    const std::string_view trimmed = whole.substr(0, whole.find_last_not_of(" \t\r\n") + 1);
    if (file.continues() || nearest_name(trimmed, {&header, 1}).empty()) continue;
    return {file.line(), std::string(without_end(whole)), whole.ends_with('\n')};
  }
  return {};
}

/// Whether the section goes on at line `at`, although the program does not read on.
bool goes_on(const std::string& path, int at) {
  LineReader file(path.c_str());
  char line[language_line_limit + 1];
  for (std::size_t length; file.next(line, language_line_limit, length);) {
    const std::string_view whole(line, length);
    if (file.line() < at || file.continues()) continue;
    if (whole.starts_with('[')) return false;
    if (whole.starts_with("String")) return true;
  }
  return false;
}

/// The end of the section, if it comes before the last text that the program shows.
void check_end(const std::string& path) {
  if (texts.next > text::last_used) return;
  Facts facts{.section = "Harrier", .key = key_of(texts.next), .after = LangText[texts.next]};
  if (texts.stopped_at == 0 || !goes_on(path, texts.stopped_at)) {
    facts.other = key_of(text::last_used);
    const int line = texts.next == 0 ? find_header(path).line : texts.last_line;
    add_finding(Class::language_short, texts.shown, line, std::move(facts));
    return;
  }
  const bool too_long = texts.stopped_at == texts.last_line;
  facts.other = too_long ? "the line has more than 298 bytes"
                         : facts.key + " must be here, not \"" + texts.stop + "\"";
  add_finding(Class::language_stops, texts.shown, texts.stopped_at, std::move(facts));
}

/// Loads the file and checks what was read of it.
int check_loaded(const std::string& path) {
  text_listener = listen_to_text;
  const int result = LoadTextFile(harrier, path.c_str());
  text_listener = nullptr;
  if (result == 1) return EIO;
  if (result == 0) {
    check_end(path);
    return 0;
  }
  const Header found = find_header(path);
  if (found.line == 0) return ENODATA;
  add_finding(Class::language_section, texts.shown, found.line,
              {.before = found.text,
               .other = format("\"%s\"%s does not begin", found.text.c_str(),
                               found.ends ? "" : " without a line end")});
  return 0;
}

}  // namespace

bool is_language_name(std::string_view name) {
  for (int number = SCHAR_MIN; number <= SCHAR_MAX; ++number) {
    if (name == language_file_name(harrier, static_cast<signed char>(number))) return true;
  }
  return false;
}

int check_texts(const std::string& path, const std::string& shown) {
  if (AllocText() != 0) return ENOMEM;
  texts = {.shown = shown};
  const int error = check_loaded(path);
  FreeText();
  return error;
}

int check_language(const std::string& path, const std::string& shown) {
  const int error = check_texts(path, shown);
  if (error != ENODATA) return error;
  add_finding(Class::language_section, shown, 1, {.other = "the file does not have"});
  return 0;
}
