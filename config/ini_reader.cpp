#include "config/ini_reader.h"

#include <cstdlib>
#include <cstring>

#include "config/families.h"
#include "config/known_files.h"
#include "config/line_reader.h"

std::uint8_t actual_section = 255;
std::uint8_t g_index = 0;
const char* p_s = "";
void (*piece_listener)(int file, const ReadPiece& piece) = nullptr;

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
Fate open_section(int file, char* line) {
  const std::size_t next = actual_section == 255 ? 0 : actual_section + 1U;
  char* rest;
  const int section = find_name(SectionNames[file], line + 1, ']', next, rest);
  if (section < 0) return Fate::not_opened;
  actual_section = static_cast<std::uint8_t>(section);
  return Fate::opened;
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
  // 64 bits on every platform, so that a number too large has the same low bits everywhere.
  return static_cast<unsigned>(std::strtoll(text, nullptr, 10));
}

/// Where the record keeps a value.
struct Place {
  const Family* family = nullptr;
  int index = 0;  // of the entry
  char* entry = nullptr;
  const Field* field = nullptr;  // null when there is no place
};

Place place_of(int file, int section, int key) {
  Place place;
  place.family = family_of(file, section, place.index);
  if (place.family == nullptr || place.index >= place.family->stored || key < 0 ||
      key >= static_cast<int>(place.family->fields.size()) ||
      (file == group_file && g_index >= group_count)) {
    return place;
  }
  place.entry = reinterpret_cast<char*>(&INI) + place.family->offset +
                static_cast<std::size_t>(place.index) * place.family->size;
  if (file == group_file) place.entry += g_index * sizeof(Group);
  place.field = &place.family->fields[static_cast<std::size_t>(key)];
  return place;
}

/// What lasts from line to line of a file.
struct Reading {
  int file;
  int row = 0;             // of key names, in use
  std::size_t likely = 0;  // the next key, if the file is in order
  int key = -1;            // of the last line that had a known one
};

Fate read_piece(Reading& reading, char* line) {
  switch (line[0]) {
    case '\n':
    case '\0':
    case '\a':
    case ';':
    case ' ':
      return Fate::skipped;
    case '[':
      reading.likely = 0;
      return open_section(reading.file, line);
    default:
      break;
  }
  if (actual_section == 255) return Fate::orphan;
  const int chosen = row_of(reading.file, actual_section, reading.row);
  char* value;
  reading.key = find_name(LineNames[reading.file][chosen], line, '=', reading.likely, value);
  // An unknown key chooses the row too, but a line without "=" has no key.
  const bool has_key = reading.key >= 0 || std::strchr(line, '=') != nullptr;
  if (!has_key) return Fate::no_key;
  reading.row = chosen;
  if (reading.key < 0) return Fate::unknown_key;
  reading.likely = static_cast<std::size_t>(reading.key) + 1;
  p_s = trim_value(value);
  FillVar(reading.file, actual_section, reading.key);
  return Fate::taken;
}

/// Tells the listener of the pieces of a file.
class Account {
 public:
  /// Before the piece is read, which changes it.
  void note(const LineReader& reader, const char* bytes) {
    std::memcpy(bytes_, bytes, reader.piece_size());
    piece_.bytes = {bytes_, reader.piece_size()};
    piece_.line = reader.line();
    piece_.continues = reader.continues();
  }

  /// After it has been read.
  void tell(const Reading& reading, Fate fate) {
    const bool has_value = fate == Fate::taken;
    const Place place = has_value ? place_of(reading.file, actual_section, reading.key) : Place{};
    piece_.fate = has_value && place.field == nullptr ? Fate::no_room : fate;
    piece_.section = actual_section;
    piece_.key = has_value ? reading.key : -1;
    piece_.value = has_value ? p_s : "";
    piece_.field = place.field;
    piece_.entry = place.entry;
    piece_listener(reading.file, piece_);
  }

 private:
  ReadPiece piece_;
  char bytes_[line_limit + 2];
};

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
  Reading reading{file};
  Account account;
  while (reader.next(line, line_limit, length)) {
    if (piece_listener != nullptr) account.note(reader, line);
    const Fate fate = read_piece(reading, line);
    if (piece_listener != nullptr) account.tell(reading, fate);
  }
  p_s = "";
  note_read(path, reader.error(), info);
  return reader.error() == 0 ? 0 : 1;
}

void FillVar(int file, int section, int key) {
  const Place place = place_of(file, section, key);
  if (place.field == nullptr) return;
  const Field& field = *place.field;
  if (field.kind == Kind::text) {
    std::strncpy(bytes_at(field, place.entry), p_s, field.width);
  } else {
    unsigned value = number_in(p_s);
    if (field.kind == Kind::low_u8) value &= 0xFFU;
    set_number_at(field, place.entry, value);
  }
  if (place.family->loaded != nullptr) place.family->loaded(place.entry, place.index, field);
}
