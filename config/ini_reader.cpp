#include "config/ini_reader.h"

#include <cstdlib>
#include <cstring>

#include "config/families.h"
#include "config/known_files.h"
#include "config/line_reader.h"

std::uint8_t actual_section = 255;
std::uint8_t g_index = 0;
const char* p_s = "";

namespace {

constexpr std::size_t line_limit = 298;

/// Returns the slot whose name, followed by `mark`, is a prefix of `text`, or -1. `rest` becomes
/// what follows the mark. Names differ and do not hold the mark, so at most one slot matches. The
/// search starts at `likely`, since most files are in the order of the tables.
template <std::size_t Slots, std::size_t Width>
int find_name(const char (&slots)[Slots][Width], char* text, char mark, std::size_t likely,
              char*& rest) {
  for (std::size_t i = 0; i < Slots; ++i) {
    const std::size_t slot = (likely + i) % Slots;
    const char* name = slots[slot];
    if (*name == '\0') continue;  // unused
    char* at = text;
    while (*name != '\0' && *name == *at) ++name, ++at;
    if (*name != '\0' || *at != mark) continue;
    rest = at + 1;
    return static_cast<int>(slot);
  }
  return -1;
}

/// Returns the row of key names for a section. The events of a group from 16 on have none: the
/// `row` of the previous key line stays in use, which is that of an event when the file is in
/// order.
int row_of(int file, int section, int row) {
  constexpr int events_with_row = 16;
  int index;
  const Family* family = family_of(file, section, index);
  if (family == nullptr) return row;
  const auto chosen = static_cast<int>(family - families_of(file).data());
  const bool keeps_row = file == group_file && chosen == group_events && index >= events_with_row;
  return keeps_row ? row : chosen;
}

/// Handles one "[name]" line.
void open_section(int file, char* line) {
  const std::size_t next = actual_section == 255 ? 0 : actual_section + 1U;
  char* rest;
  const int section = find_name(SectionNames[file], line + 1, ']', next, rest);
  if (section >= 0) actual_section = static_cast<std::uint8_t>(section);
}

/// Returns a value without its first quote, and ends it before the next quote or the line feed.
char* trim_value(char* value) {
  if (*value == '"') ++value;
  // A line feed can only be the last character of the line.
  char* end = value;
  while (*end != '"' && *end != '\n' && *end != '\0') ++end;
  *end = '\0';
  return value;
}

/// Returns the number at the start of `text`, as strtol reads it, but a short one more quickly.
unsigned number_in(const char* text) {
  constexpr int short_number = 9;
  unsigned value = 0;
  for (int i = 0; i < short_number; ++i) {
    const auto digit = static_cast<unsigned>(text[i] - '0');
    if (digit <= 9)
      value = 10 * value + digit;
    else if (i > 0)
      return value;
    else
      break;  // perhaps a blank or a sign
  }
  return static_cast<unsigned>(std::strtol(text, nullptr, 10));
}

}  // namespace

int EncodeINIFile(int file, const char* path) {
  LineReader reader(path);
  const struct stat info = reader.identify();
  if (!reader.opened()) {
    note_read(path, reader.error(), info);
    return 1;
  }

  char line[line_limit + 2];
  std::size_t length;
  int row = 0;
  std::size_t likely = 0;
  while (reader.next(line, line_limit, length)) {
    switch (line[0]) {
      case '\n':
      case '\0':
      case '\a':
      case ';':
      case ' ':
        continue;
      case '[':
        open_section(file, line);
        likely = 0;
        continue;
      default:
        break;
    }
    if (actual_section == 255) continue;
    const int chosen = row_of(file, actual_section, row);
    char* value;
    const int key = find_name(LineNames[file][chosen], line, '=', likely, value);
    // An unknown key chooses the row too, but a line without "=" has no key.
    if (key >= 0 || std::strchr(line, '=') != nullptr) row = chosen;
    if (key < 0) continue;
    likely = static_cast<std::size_t>(key) + 1;
    p_s = trim_value(value);
    FillVar(file, actual_section, key);
  }
  p_s = "";
  note_read(path, reader.error(), info);
  return reader.error() == 0 ? 0 : 1;
}

void FillVar(int file, int section, int key) {
  int index;
  const Family* family = family_of(file, section, index);
  if (family == nullptr || index >= family->stored || key < 0 ||
      key >= static_cast<int>(family->fields.size())) {
    return;
  }
  if (file == group_file && g_index >= group_count) return;
  auto* entry = reinterpret_cast<char*>(&INI) + family->offset +
                static_cast<std::size_t>(index) * family->size;
  if (file == group_file) entry += g_index * sizeof(Group);

  const Field& field = family->fields[static_cast<std::size_t>(key)];
  if (field.kind == Kind::text) {
    std::strncpy(bytes_at(field, entry), p_s, field.width);
  } else {
    unsigned value = number_in(p_s);
    if (field.kind == Kind::low_u8) value &= 0xFFU;
    set_number_at(field, entry, value);
  }
  if (family->loaded != nullptr) family->loaded(entry, index, field);
}
