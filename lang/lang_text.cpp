#include "lang/lang_text.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "config/line_reader.h"
#include "tui/columns.h"
#include "tui/diag.h"
#include "tui/format.h"

char* LangText[text_count];
void (*text_listener)(const ReadText& text) = nullptr;
char LangFileVersion[32];
char LM[50][100];
char sys_mess[20][30] = {
    "On Line",         "On Battery",       "Shutdown",         "Shutdown Stopped", "UPS Shutdown",
    "Shutdown Cancel", "Battery Low",      "Battery OK",       "Overload",         "Load OK",
    "Overheated",      "Temperature OK",   "Bypass On",        "Bypass Off",       "UPS Fault",
    "UPS OK",          "No Communication", "Communication OK", "Test Failed",      "Test Passed",
};

namespace {

constexpr const char* headers[] = {nullptr,     "[Merlin]",  "[Osprey]",
                                   "[Harrier]", "[Skylark]", "[Wren]"};

constexpr std::size_t key_length = 9;              // of "String000"
constexpr std::size_t counted = key_length + 102;  // bytes of a text line that count
constexpr std::string_view version_key = "Version:";
constexpr std::size_t version_size = 20;

/// Writes `prefix` and the number, in at least three digits as for "%03d", and a terminator.
void name_number(char* name, std::string_view prefix, int number) {
  name += prefix.copy(name, prefix.size());
  if (number >= 1000) *name++ = static_cast<char>('0' + number / 1000);
  *name++ = static_cast<char>('0' + number / 100 % 10);
  *name++ = static_cast<char>('0' + number / 10 % 10);
  *name++ = static_cast<char>('0' + number % 10);
  *name = '\0';
}

void set_default(int number) { name_number(LangText[number], "Text ", number); }

/// Returns a line before the section without its line end. Drops the last character whatever it is:
/// a header that ends the file without a line end is not found.
std::string_view header_line(std::string_view line) {
  if (line.size() < 2) return {};
  line.remove_suffix(line[line.size() - 2] == '\r' ? 2 : 1);
  return line;
}

/// Returns a line of the section without its line end if it has one.
std::string_view text_line(const char* line, std::size_t length) {
  std::string_view text(line, length);
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

void note_version(std::string_view line) {
  if (!line.starts_with(version_key) || line.size() <= version_key.size() + 1) return;
  std::string_view version = line.substr(version_key.size());
  if (version.starts_with(' ')) version.remove_prefix(1);
  LangFileVersion[version.copy(LangFileVersion, version_size)] = '\0';
}

/// Reads up to the header of the section. Returns false when the file does not have that header.
bool find_section(LineReader& file, int program) {
  char line[language_line_limit + 1];
  std::size_t length;
  while (file.next(line, language_line_limit, length)) {
    if (section_program({line, length}) == program) return true;
    note_version(header_line({line, length}));
  }
  return false;
}

/// Stores text `number` from its line. Returns false when the line belongs to something else.
bool store_text(int number, std::string_view line) {
  char key[key_length + 2];
  name_number(key, "String", number);
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos || line.substr(0, equals) != key) return false;
  constexpr std::size_t before_text = 2;  // "=" and the opening quote
  std::string_view text;
  if (line.size() > equals + before_text) text = line.substr(equals + before_text);
  const std::size_t closing = text.rfind('"');
  if (closing != std::string_view::npos) text = text.substr(0, closing);
  text = cut_bytes(text, text_size - 1);
  LangText[number][text.copy(LangText[number], text.size())] = '\0';
  return true;
}

void load_section(LineReader& file) {
  char line[language_line_limit + 1];
  std::size_t length;
  for (int number = 0; number < text_count; ++number) {
    if (!file.next(line, language_line_limit, length)) {
      set_default(number);
      continue;
    }
    const std::string_view text = text_line(line, length);
    const bool stored = store_text(number, cut_bytes(text, counted));
    if (text_listener != nullptr) text_listener({file.line(), number, text, stored});
    if (!stored) return;
  }
}

/// The monitoring agent and the sibling program take some of their texts from tables of their own.
void fill_tables() {
  int number = 80;
  for (auto& text : sys_mess) std::snprintf(text, sizeof text, "%s", LangText[number++]);
  number = 1;
  for (auto& text : LM) std::snprintf(text, sizeof text, "%s", LangText[number++]);
  const std::size_t used = std::strlen(LM[0]);
  std::snprintf(LM[0] + used, sizeof LM[0] - used, "   [ %s ]", "Version " HARRIER_VERSION);
}

}  // namespace

int section_program(std::string_view piece) {
  const std::string_view line = header_line(piece);
  for (int program = merlin; program <= wren; ++program) {
    if (line == headers[program]) return program;
  }
  return 0;
}

int AllocText() {
  for (int number = 0; number < text_count; ++number) {
    LangText[number] = static_cast<char*>(std::malloc(text_size));
    if (LangText[number] == nullptr) return 1;
    set_default(number);
  }
  return 0;
}

std::string language_file_name(int program, signed char language) {
  return format("%s_%02d.ini", program == skylark ? "lang1" : "lang", language);
}

int LoadText(int program, signed char language) {
  if (program < merlin || program > wren) return 2;
  return LoadTextFile(program, program_path(language_file_name(program, language)).c_str());
}

int LoadTextFile(int program, const char* path) {
  LineReader file(path);
  if (!file.opened()) {
    printfc(format("\n\rCannot open file %s ", path).c_str());
    return 1;
  }
  LangFileVersion[0] = '\0';
  if (!find_section(file, program)) {
    printfc(format("\n\rCannot found section %s ", headers[program]).c_str());
    return 2;
  }
  load_section(file);
  if (program == merlin || program == skylark) fill_tables();
  return 0;
}

std::string shown_text(int number) { return printable(LangText[number]); }

void FreeText() {
  for (char* text : LangText) std::free(text);
}
