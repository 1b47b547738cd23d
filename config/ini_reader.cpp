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

/// The section that is open while a file is read.
struct OpenSection {
  OpenSection(int file, int section) : family(family_of(file, section, index)) {
    if (family != nullptr) row = static_cast<int>(family - families_of(file).data());
  }

  int index = 0;
  const Family* family;  // null when the file can have no section of this number
  int row = -1;          // of the key names of this family
};

/// Returns the row of key names for a section. The events of a group from 16 on have none: the
/// `row` of the previous key line stays in use, which is that of an event when the file is in
/// order.
int row_of(int file, const OpenSection& open, int row) {
  constexpr int events_with_row = 16;
  if (open.family == nullptr) return row;
  const bool keeps_row =
      file == group_file && open.row == group_events && open.index >= events_with_row;
  return keeps_row ? row : open.row;
}

/// Handles one "[name]" line. Returns whether it opens a section.
bool open_section(int file, char* line) {
  const std::size_t next = actual_section == 255 ? 0 : actual_section + 1U;
  char* rest;
  const int section = find_name(SectionNames[file], line + 1, ']', next, rest);
  if (section < 0) return false;
  actual_section = static_cast<std::uint8_t>(section);
  return true;
}

/// A value without quotes, which ends before a quote or the line feed.
struct Value {
  char* text = nullptr;
  char* end = nullptr;
  char last = '\0';  // what was at the end, where there is a NUL now
};

Value trim_value(char* text) {
  if (*text == '"') ++text;
  // A line feed can only be the last character of the line.
  char* end = text;
  while (*end != '"' && *end != '\n' && *end != '\0') ++end;
  const Value value{text, end, *end};
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
  char* entry = nullptr;
  const Field* field = nullptr;  // null when there is no place
};

Place place_of(int file, const OpenSection& open, int key) {
  const Family* const family = open.family;
  if (family == nullptr || open.index >= family->stored || key < 0 ||
      key >= static_cast<int>(family->fields.size()) ||
      (file == group_file && g_index >= group_count)) {
    return {};
  }
  char* entry = reinterpret_cast<char*>(&INI) + family->offset +
                static_cast<std::size_t>(open.index) * family->size;
  if (file == group_file) entry += g_index * sizeof(Group);
  return {entry, &family->fields[static_cast<std::size_t>(key)]};
}

/// What lasts from line to line of a file.
struct Reading {
  explicit Reading(int read) : file(read), open(read, actual_section) {}

  int file;
  OpenSection open;
  int row = 0;              // of key names, in use
  std::size_t likely = 0;   // the next key, if the file is in order
  int key = -1;             // of the last line that had a known one
  Place place;              // of its value
  char* written = nullptr;  // what follows its "="
  Value value;
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
      if (!open_section(reading.file, line)) return Fate::not_opened;
      reading.open = OpenSection(reading.file, actual_section);
      return Fate::opened;
    default:
      break;
  }
  if (actual_section == 255) return Fate::orphan;
  const int chosen = row_of(reading.file, reading.open, reading.row);
  reading.key =
      find_name(LineNames[reading.file][chosen], line, '=', reading.likely, reading.written);
  // An unknown key chooses the row too, but a line without "=" has no key.
  const bool has_key = reading.key >= 0 || std::strchr(line, '=') != nullptr;
  if (!has_key) return Fate::no_key;
  reading.row = chosen;
  if (reading.key < 0) return Fate::unknown_key;
  reading.likely = static_cast<std::size_t>(reading.key) + 1;
  reading.value = trim_value(reading.written);
  p_s = reading.value.text;
  reading.place = place_of(reading.file, reading.open, reading.key);
  FillVar(reading.file, actual_section, reading.key);
  return reading.place.field == nullptr ? Fate::no_room : Fate::taken;
}

/// Tells the listener of a piece that has been read. `length` is that of its text.
void tell(const Reading& reading, const LineReader& reader, char* line, std::size_t length,
          Fate fate) {
  const bool has_value = fate == Fate::taken || fate == Fate::no_room;
  if (has_value) *reading.value.end = reading.value.last;
  ReadPiece piece;
  piece.bytes = {line, reader.piece_size()};
  piece.line = {line, length};
  if (piece.line.ends_with('\n')) piece.line.remove_suffix(1);
  piece.number = reader.line();
  piece.continues = reader.continues();
  piece.fate = fate;
  piece.section = actual_section;
  piece.family = reading.open.family;
  piece.index = reading.open.index;
  if (has_value) {
    piece.key = reading.key;
    piece.own_names = reading.row == reading.open.row;
    piece.written = piece.line.substr(static_cast<std::size_t>(reading.written - line));
    piece.value = {reading.value.text, reading.value.end};
    piece.field = reading.place.field;
    piece.entry = reading.place.entry;
  }
  piece_listener(reading.file, piece);
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
  Reading reading(file);
  while (reader.next(line, line_limit, length)) {
    const Fate fate = read_piece(reading, line);
    if (piece_listener != nullptr) tell(reading, reader, line, length, fate);
  }
  p_s = "";
  note_read(path, reader.error(), info);
  return reader.error() == 0 ? 0 : 1;
}

void FillVar(int file, int section, int key) {
  const OpenSection open(file, section);
  const Place place = place_of(file, open, key);
  if (place.field == nullptr) return;
  const Field& field = *place.field;
  if (field.kind == Kind::text) {
    std::strncpy(bytes_at(field, place.entry), p_s, field.width);
  } else {
    unsigned value = number_in(p_s);
    if (field.kind == Kind::low_u8) value &= 0xFFU;
    set_number_at(field, place.entry, value);
  }
  if (open.family->loaded != nullptr) open.family->loaded(place.entry, open.index, field);
}
