#include "config/ini_reader.h"

#include <cstdlib>
#include <cstring>

#include "config/families.h"
#include "config/line_reader.h"

std::uint8_t actual_section = 255;
std::uint8_t g_index = 0;
const char* p_s = "";

namespace {

constexpr std::size_t line_limit = 298;

/// The number of the slot whose name `text` begins with, `mark` behind it; -1 if there is none.
/// Looked for from `likely` on, since files are usually in the order of the tables, whose names
/// differ from each other and do not hold the mark. `rest` becomes what follows the mark.
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

/// The row of key names for a section, or `row`, that of the line before, where it stays in use:
/// only the first 16 events of a group file choose their row, the others rely on the order of the
/// file.
int row_of(int kind, int section, int row) {
  constexpr int first_event = 2;
  constexpr int events_with_row = 16;
  if (kind == group_file && section >= first_event + events_with_row) return row;
  int index;
  const Family* family = family_of(kind, section, index);
  return family == nullptr ? row : static_cast<int>(family - families_of(kind).data());
}

/// Handles one "[name]" line.
void open_section(int kind, char* line) {
  const std::size_t next = actual_section == 255 ? 0 : actual_section + 1U;
  char* rest;
  const int section = find_name(SectionNames[kind], line + 1, ']', next, rest);
  if (section >= 0) actual_section = static_cast<std::uint8_t>(section);
}

/// Cuts the value that starts at `value` out of its line.
char* trim_value(char* value) {
  if (*value == '"') ++value;
  // A line feed can only be the last character, so whichever of the two comes first ends the value.
  char* end = value;
  while (*end != '"' && *end != '\n' && *end != '\0') ++end;
  *end = '\0';
  return value;
}

/// The number that `text` begins with, as strtol reads it; a plain short one more quickly.
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

int EncodeINIFile(int kind, const char* path) {
  LineReader file(path);
  if (!file.opened()) return 1;

  char line[line_limit + 2];
  std::size_t length;
  int row = 0;
  std::size_t likely = 0;
  while (file.next(line, line_limit, length)) {
    switch (line[0]) {
      case '\n':
      case '\0':
      case '\a':
      case ';':
      case ' ':
        continue;
      case '[':
        open_section(kind, line);
        likely = 0;
        continue;
      default:
        break;
    }
    if (actual_section == 255) continue;
    const int chosen = row_of(kind, actual_section, row);
    char* value;
    const int key = find_name(LineNames[kind][chosen], line, '=', likely, value);
    // An unknown key chooses the row as well, but a line without "=" has no key.
    if (key >= 0 || std::strchr(line, '=') != nullptr) row = chosen;
    if (key < 0) continue;
    likely = static_cast<std::size_t>(key) + 1;
    p_s = trim_value(value);
    FillVar(kind, actual_section, key);
  }
  p_s = "";
  return 0;
}

void FillVar(int kind, int section, int key) {
  int index;
  const Family* family = family_of(kind, section, index);
  if (family == nullptr || index >= family->stored || key < 0 ||
      key >= static_cast<int>(family->fields.size())) {
    return;
  }
  if (kind == group_file && g_index >= group_count) return;
  auto* entry = reinterpret_cast<char*>(&INI) + family->offset +
                static_cast<std::size_t>(index) * family->size;
  if (kind == group_file) entry += g_index * sizeof(Group);

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
