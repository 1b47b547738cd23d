#include "config/ini_reader.h"

#include <cstdlib>
#include <cstring>

#include "config/fields.h"
#include "config/line_reader.h"

std::uint8_t actual_section = 255;
std::uint8_t g_index = 0;
const char* p_s = "";

namespace {

constexpr std::size_t line_limit = 298;

/// The number of the slot that holds `name`, looked for from `likely` on, since files are usually
/// in the order of the tables; -1 if there is none. The names of a table differ from each other.
template <std::size_t Slots, std::size_t Width>
int find_name(const char (&slots)[Slots][Width], const char* name, std::size_t length,
              std::size_t likely) {
  if (length == 0 || length >= Width) return -1;  // an unused slot is empty and never matches
  for (std::size_t i = 0; i < Slots; ++i) {
    const std::size_t slot = (likely + i) % Slots;
    if (std::memcmp(slots[slot], name, length + 1) == 0) return static_cast<int>(slot);
  }
  return -1;
}

/// The row of key names for a section, or -1 where the row of the line before stays in use: only
/// the first 16 events of a group file choose their row, the others rely on the order of the file.
int row_of(int kind, int section) {
  constexpr int first_event = 2;
  constexpr int events_with_row = 16;
  if (kind == group_file && section >= first_event + events_with_row) return -1;
  int index;
  const Family* family = family_of(kind, section, index);
  return family == nullptr ? -1 : static_cast<int>(family - families_of(kind).data());
}

/// Handles one "[name]" line. Returns whether it opened another section.
void open_section(int kind, char* line) {
  char* const end = std::strchr(line, ']');
  if (end == nullptr) return;
  *end = '\0';
  const std::size_t next = actual_section == 255 ? 0 : actual_section + 1U;
  const int section =
      find_name(SectionNames[kind], line + 1, static_cast<std::size_t>(end - line) - 1, next);
  if (section >= 0) actual_section = static_cast<std::uint8_t>(section);
}

/// Cuts the value that starts at `value` out of its line.
char* trim_value(char* value) {
  if (*value == '"') ++value;
  char* end = std::strchr(value, '"');
  if (end == nullptr) end = std::strchr(value, '\n');
  if (end != nullptr) *end = '\0';
  return value;
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
    char* const equals = static_cast<char*>(std::memchr(line, '=', length));
    if (equals == nullptr) continue;
    *equals = '\0';
    const int chosen = row_of(kind, actual_section);
    if (chosen >= 0) row = chosen;
    const int key =
        find_name(LineNames[kind][row], line, static_cast<std::size_t>(equals - line), likely);
    if (key < 0) continue;
    likely = static_cast<std::size_t>(key) + 1;
    p_s = trim_value(equals + 1);
    FillVar(kind, actual_section, key);
  }
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
    auto value = static_cast<unsigned>(std::strtol(p_s, nullptr, 10));
    if (field.kind == Kind::low_u8) value &= 0xFFU;
    set_number_at(field, entry, value);
  }
  if (family->loaded != nullptr) family->loaded(entry, index, field);
}
