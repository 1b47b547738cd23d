#include "check/reading.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/finding.h"
#include "check/nearest.h"
#include "check/source.h"
#include "config/ini_writer.h"
#include "tui/columns.h"
#include "tui/format.h"

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";
constexpr std::string_view mark = "\xEF\xBB\xBF";  // the byte order mark in UTF-8

/// Under which header the lines of a file stand, as they look.
enum class Under { none, known, unknown };

Source* source = nullptr;  // whose lines come now
Under under = Under::none;
std::string unknown_header;  // with its brackets
int last_long_line = 0;      // that has a finding
int last_nul_line = 0;       // the same
bool carriage_returns = false;

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// What the reader sees of a piece: nothing from the first NUL byte on, and no line end.
std::string_view line_of(const ReadPiece& piece) {
  std::string_view line = piece.bytes.substr(0, piece.bytes.find('\0'));
  if (line.ends_with('\n')) line.remove_suffix(1);
  return line;
}

std::string section_name(int file, int section) {
  return SectionNames[file][static_cast<std::size_t>(section)];
}

void add(Class kind, int line, Facts facts = {}) {
  add_finding(kind, source->shown, line, std::move(facts));
}

/// The two remarks that a save writes.
bool is_own_remark(std::string_view line) {
  static const std::string header = [] {
    std::string text;
    write_file_header(text);
    return text;
  }();
  const std::size_t at = header.find(std::string(line) + '\n');
  return at != std::string::npos && (at == 0 || header[at - 1] == '\n');
}

std::string hint(std::string_view nearest) {
  return nearest.empty() ? "" : format(". Did you mean \"%s\"?", std::string(nearest).c_str());
}

// --- Lines without effect ------------------------------------------------------------------------

/// A line that the reader skips. `#` begins no remark here, but the writer of the line meant one.
void check_skipped(int number, std::string_view line) {
  const std::string_view text = trimmed(line);
  if (text.empty()) return;
  if (text[0] == ';' || text[0] == '#') {
    if (!is_own_remark(line)) add(Class::remark, number);
  } else if (text[0] == '\a') {
    add(Class::bell_line, number);
  } else if (blanks.find(line[0]) != std::string_view::npos) {
    add(Class::indented, number);
  }
}

bool is_remark_or_indented(std::string_view line) {
  return trimmed(line).empty() || line[0] == '#' || line[0] == ';' ||
         blanks.find(line[0]) != std::string_view::npos;
}

/// Whether `name` is a numbered name of this list, but with a number that the list does not have.
bool is_too_high(std::string_view name, std::string_view prefix, int count) {
  constexpr std::string_view digits = "0123456789";
  if (name.size() < prefix.size() + 2 || !name.starts_with(prefix)) return false;
  const std::string_view number = name.substr(prefix.size());
  return number.find_first_not_of(digits) == std::string_view::npos &&
         (number.size() > 2 || std::stoi(std::string(number)) >= count);
}

std::string two_digits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

constexpr char no_effect[] = "it has no effect, and a save drops it";

/// Whether kestrel.ini, which is read first, is no part of the run. It may leave a section open.
bool follows_unknown_file() { return !source_of(main_file).checked; }

void check_orphan(int number, std::string_view line) {
  add(Class::orphan, number,
      {.before = std::string(line),
       .other = follows_unknown_file()
                    ? "it counts for the section that the file before leaves open, or for none"
                    : no_effect});
}

// --- Headers -------------------------------------------------------------------------------------

void check_opened(const ReadPiece& piece, std::string_view line) {
  under = Under::known;
  const std::string name = section_name(source->file, piece.section);
  const std::string_view rest = trimmed(line.substr(name.size() + 2));
  if (!rest.empty())
    add(Class::after_header, piece.line, {.section = name, .before = std::string(rest)});
  int index;
  const Family* const family = family_of(source->file, piece.section, index);
  if (index >= family->stored) {
    add(Class::no_room, piece.line,
        {.section = name, .other = family->name + two_digits(family->stored - 1)});
  }
  int& first = source->headers[static_cast<std::size_t>(piece.section)];
  if (first != 0)
    add(Class::section_twice, piece.line, {.section = name, .other = std::to_string(first)});
  else
    first = piece.line;
}

void check_unknown_header(const ReadPiece& piece, std::string_view line) {
  under = Under::unknown;
  const std::size_t end = line.find(']');
  unknown_header = line.substr(0, end == std::string_view::npos ? end : end + 1);
  const std::string open =
      actual_section == 255
          ? (follows_unknown_file() ? "the section of the file before" : "no section")
          : format("[%s]", section_name(source->file, piece.section).c_str());
  if (end == std::string_view::npos) {
    add(Class::unclosed_header, piece.line, {.section = open});
    return;
  }
  const std::string_view name = line.substr(1, end - 1);
  std::vector<std::string_view> names;
  for (const auto& slot : SectionNames[source->file]) {
    if (*slot != '\0') names.emplace_back(slot);
  }
  for (const Family& family : families_of(source->file)) {
    if (family.count == 0 || !is_too_high(name, family.name, family.count)) continue;
    add(Class::too_many, piece.line,
        {.section = std::string(name), .other = family.name + two_digits(family.count - 1)});
    return;
  }
  add(Class::unknown_section, piece.line,
      {.section = open, .before = std::string(name), .other = hint(nearest_name(name, names))});
}

// --- Keys ----------------------------------------------------------------------------------------

/// The events of a group from 16 on have the key names of the line before.
bool has_borrowed_row(const Family& family, int index) {
  constexpr int events_with_row = 16;
  return source->file == group_file && &family == &families_of(group_file)[group_events] &&
         index >= events_with_row;
}

void check_unknown_key(const ReadPiece& piece, std::string_view line) {
  const std::string key(line.substr(0, line.find('=')));
  const std::string section = section_name(source->file, piece.section);
  int index;
  const Family* const family = family_of(source->file, piece.section, index);
  std::vector<std::string_view> names;
  if (family != nullptr) {
    for (const Field& field : family->fields) names.emplace_back(field.key);
    const bool is_key = std::find(names.begin(), names.end(), key) != names.end();
    if (is_key && has_borrowed_row(*family, index)) {
      add(Class::wrong_row, piece.line,
          {.section = section, .key = key, .other = format("\"%s\" has no effect", key.c_str())});
      return;
    }
    if (source->file == group_file && family == &families_of(group_file)[group_members] &&
        is_too_high(key, "UPS_", member_count)) {
      add(Class::too_many, piece.line,
          {.section = section, .key = key, .other = "UPS_" + two_digits(member_count - 1)});
      return;
    }
  }
  add(Class::unknown_key, piece.line,
      {.section = section, .key = key, .other = hint(nearest_name(key, names))});
}

// --- Values --------------------------------------------------------------------------------------

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    const std::string_view character = first_character(text);
    if (character.size() == 1 && (character[0] & 0x80) != 0) return false;
    text.remove_prefix(character.size());
  }
  return true;
}

/// A value line while it is checked.
struct Value {
  int line;
  std::string section;
  std::string key;         // of the field
  std::string_view raw;    // after "=", without the line end
  std::string_view taken;  // what the reader hands on
};

void add_value(Class kind, const Value& value, std::string_view before, std::string_view after,
               std::string other = {}) {
  add(kind, value.line,
      {.section = value.section,
       .key = value.key,
       .before = std::string(before),
       .after = std::string(after),
       .other = std::move(other)});
}

/// The quotes of a value. Returns whether all of the value is taken as it looks.
void check_quotes(const Value& value) {
  const std::string_view raw = value.raw;
  const bool opened = raw.starts_with('"');
  const std::size_t end = raw.find('"', opened ? 1 : 0);
  if (end == std::string_view::npos) {
    if (opened) add_value(Class::unclosed_quote, value, raw, value.taken);
    return;
  }
  const std::string_view rest = trimmed(raw.substr(end + 1));
  if (rest.find('"') != std::string_view::npos || (!opened && !rest.empty())) {
    add_value(Class::quote_inside, value, trimmed(raw), value.taken);
  } else if (!rest.empty()) {
    add_value(Class::after_quote, value, rest, value.taken);
  } else if (!opened) {
    add_value(Class::unclosed_quote, value, raw, value.taken);
  }
}

void check_text(const Value& value, const Field& field) {
  check_quotes(value);
  const std::string_view raw = value.raw;
  const bool quoted = raw.starts_with('"') && raw.find('"', 1) != std::string_view::npos;
  const bool edges = !quoted && trimmed(value.taken) != value.taken;
  if (edges) add_value(Class::blanks_taken, value, raw, value.taken);
  const std::string_view kept = value.taken.substr(0, field.width);
  if (kept != value.taken) add_value(Class::text_cut, value, value.taken, kept);
  if (!is_utf8(kept)) {
    add_value(Class::not_utf8, value, kept, kept);
  } else if (const std::string_view shown = edges ? trimmed(kept) : kept;
             printable(shown) != shown) {
    add_value(Class::control_bytes, value, kept, kept);
  }
}

/// The digits of a number without a sign or zeros before it. `rest` becomes what follows.
std::string_view digits_of(std::string_view text, bool& negative, std::string_view& rest) {
  text = trimmed(text);
  negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t end = std::min(text.find_first_not_of("0123456789"), text.size());
  std::string_view digits = text.substr(0, end);
  rest = trimmed(text.substr(end));
  while (digits.size() > 1 && digits[0] == '0') digits.remove_prefix(1);
  return digits;
}

void check_number(const Value& value, const Field& field, const void* entry) {
  const std::string stored = std::to_string(number_at(field, entry));
  bool negative;
  std::string_view rest;
  const std::string_view digits = digits_of(value.taken, negative, rest);
  if (digits.empty()) {
    add_value(Class::not_a_number, value, value.taken, stored);
    return;
  }
  if (!rest.empty()) add_value(Class::after_number, value, rest, stored);
  check_quotes(value);
  std::string written(digits);
  if (negative && digits != "0") written.insert(0, 1, '-');
  if (written != stored) {
    const std::size_t bits = field.width * 8;
    const unsigned long largest =
        field.kind == Kind::u8 || field.kind == Kind::low_u8 ? 255 : 65535;
    const bool fits = !negative && digits.size() <= 5 && std::stoul(std::string(digits)) <= largest;
    if (fits && field.is_switch)
      add_value(Class::shutdown_ignored, value, written, stored);
    else if (fits)
      add_value(Class::default_written, value, written, stored);
    else if (field.kind == Kind::low_u8)
      add_value(Class::low_8_bits, value, written, stored);
    else
      add_value(Class::number_range, value, written, stored, std::to_string(bits));
  }
  if (field.is_switch && number_at(field, entry) > 1)
    add_value(Class::not_a_switch, value, stored, stored);
}

/// A value that the reader has stored, or would have if the record had room for it.
void check_value(const ReadPiece& piece, std::string_view line) {
  const std::size_t equals = line.find('=');
  const std::string section = section_name(source->file, piece.section);
  int index;
  const Family* const family = family_of(source->file, piece.section, index);
  const std::string written(line.substr(0, equals));
  if (piece.fate == Fate::no_room) {
    // Under its own header, which has a finding, the line needs none.
    if (under == Under::known) return;
    const Class kind = under == Under::none ? Class::orphan : Class::unknown_key;
    add(kind, piece.line,
        {.section = section,
         .key = written,
         .before = std::string(line),
         .other = kind == Class::orphan ? no_effect : ""});
    return;
  }
  const Value value{piece.line, section, piece.field->key, line.substr(equals + 1), piece.value};
  if (under != Under::known) {
    add(under == Under::none ? Class::carried_section : Class::wrong_section, piece.line,
        {.section = section,
         .key = value.key,
         .before = std::string(line),
         .other = unknown_header});
  } else if (written != value.key) {
    add(Class::wrong_row, piece.line,
        {.section = section,
         .key = value.key,
         .other = format("\"%s\" is taken for %s.%s", written.c_str(), section.c_str(),
                         value.key.c_str())});
  }
  const int key = key_number(*family, *piece.field);
  int& counts = source->values[static_cast<std::size_t>(piece.section * key_slots + key)];
  if (counts != 0 && counts != piece.line) {
    add(Class::key_twice, counts,
        {.section = section, .key = value.key, .other = std::to_string(piece.line)});
  }
  counts = piece.line;
  if (piece.field->kind == Kind::text)
    check_text(value, *piece.field);
  else
    check_number(value, *piece.field, piece.entry);
}

// --- Pieces --------------------------------------------------------------------------------------

/// A line of several pieces has one finding for all of them, and one for each that has an effect.
void check_continuation(const ReadPiece& piece, std::string_view line) {
  const bool has_effect = piece.fate == Fate::taken || piece.fate == Fate::opened;
  if (has_effect) {
    add(Class::long_line_taken, piece.line, {.before = std::string(line)});
  } else if (last_long_line != piece.line) {
    add(Class::long_line, piece.line);
  }
  last_long_line = piece.line;
}

/// What is wrong with the bytes of a line, whatever it says.
void check_bytes(const ReadPiece& piece) {
  const bool has_nul = std::memchr(piece.bytes.data(), '\0', piece.bytes.size()) != nullptr;
  if (has_nul && last_nul_line != piece.line) {
    last_nul_line = piece.line;
    add(Class::nul_byte, piece.line);
  }
  if (!carriage_returns && piece.bytes.ends_with("\r\n")) {
    carriage_returns = true;
    add(Class::carriage_return, piece.line);
  }
}

void begin_file(Source& next) {
  source = &next;
  under = Under::none;
  last_long_line = 0;
  last_nul_line = 0;
  carriage_returns = false;
}

}  // namespace

Listening::Listening() {
  source = nullptr;
  piece_listener = listen_to_piece;
}

void listen_to_piece(int file, const ReadPiece& piece) {
  if (findings_are_full()) return;
  Source& now = source_of(file, file == group_file ? g_index : 0);
  if (source != &now) begin_file(now);
  source->lines = piece.line;
  check_bytes(piece);
  const std::string_view line = line_of(piece);
  if (piece.continues) check_continuation(piece, line);
  if (piece.line == 1 && line.starts_with(mark)) add(Class::byte_order_mark, 1);

  switch (piece.fate) {
    case Fate::opened:
      check_opened(piece, line);
      return;
    case Fate::not_opened:
      check_unknown_header(piece, line);
      return;
    case Fate::taken:
    case Fate::no_room:
      check_value(piece, line);
      return;
    default:
      break;
  }
  if (piece.continues) return;
  if (piece.fate == Fate::skipped || is_remark_or_indented(line))
    check_skipped(piece.line, line);
  else if (line.find('=') == std::string_view::npos)
    add(Class::no_equals, piece.line, {.before = std::string(line)});
  else if (piece.fate == Fate::orphan)
    check_orphan(piece.line, line);
  else
    check_unknown_key(piece, line);
}
