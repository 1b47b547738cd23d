#include "check/reading.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/finding.h"
#include "check/nearest.h"
#include "check/secret.h"
#include "check/source.h"
#include "config/ini_writer.h"
#include "tui/columns.h"
#include "tui/format.h"

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";
constexpr std::string_view mark = "\xEF\xBB\xBF";  // the byte order mark in UTF-8

/// Under which header the lines of a file stand, as they look. A hidden one counts, but stands in
/// the middle of a line that was too long.
enum class Under { none, known, unknown, hidden };

Source* source = nullptr;  // whose lines come now
Under under = Under::none;
std::string why_wrong;        // the lines count for another section than they look
std::size_t first_wrong = 0;  // the finding of the first such line since the last header
int wrong_lines = 0;
std::size_t first_repeat = 0;  // the finding of the first key since then that came before
int first_repeat_line = 0;
int repeats = 0;
int header_remark = 0;  // the line of one that no header has followed
std::string remarked_header;
int last_long_line = 0;  // that has a finding
int last_nul_line = 0;   // that has a finding
bool carriage_returns = false;
bool utf16 = false;

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view section_name(const ReadPiece& piece) {
  return SectionNames[source->file][static_cast<std::size_t>(piece.section)];
}

void add(Class kind, int line, Facts facts = {}) {
  add_finding(kind, source->shown, line, std::move(facts));
}

/// The two remarks that a save writes. Line ends and blanks before them do not matter.
bool is_own_remark(std::string_view line) {
  static const std::string header = [] {
    std::string text;
    write_file_header(text);
    return text;
  }();
  for (std::string_view rest = header; !rest.empty();) {
    const std::size_t end = rest.find('\n');
    if (trimmed(rest.substr(0, end)) == trimmed(line)) return line[0] == header[0];
    rest.remove_prefix(end + 1);
  }
  return false;
}

std::string hint(std::string_view nearest) {
  return nearest.empty() ? "" : format(". Did you mean \"%s\"?", std::string(nearest).c_str());
}

// --- Lines under one header ----------------------------------------------------------------------

/// The lines under another header begin.
void begin_lines() {
  wrong_lines = 0;
  repeats = 0;
}

/// A key that came before, in the line `earlier`. Several under one header tell of a header that is
/// missing or stands there twice, so they have one finding, at the header of the section.
void add_repeated(const ReadPiece& piece, int earlier) {
  const std::string section(section_name(piece));
  const int header = source->headers[static_cast<std::size_t>(piece.section)];
  if (header == 0 || ++repeats == 1) {
    first_repeat = findings.size();
    first_repeat_line = piece.number;
    add(Class::key_twice, earlier,
        {.section = section, .key = piece.field->key, .other = std::to_string(piece.number)});
    return;
  }
  findings[first_repeat] = {
      Class::keys_replaced,
      source->shown,
      header,
      {.section = section,
       .other = format("%d lines from %d to %d", repeats, first_repeat_line, piece.number)}};
}

/// A value that is taken for another section than that of the header above it. All such values
/// under the header have one finding; the header has its own.
void add_wrong(const ReadPiece& piece) {
  if (++wrong_lines > 1) {
    findings[first_wrong].facts.other = format("%s. The same goes for %d more up to line %d",
                                               why_wrong.c_str(), wrong_lines - 1, piece.number);
    return;
  }
  first_wrong = findings.size();
  add(Class::wrong_section, piece.number,
      {.section = std::string(section_name(piece)),
       .key = piece.field->key,
       .before = without_value(piece.line),
       .other = why_wrong});
}

// --- Lines without effect ------------------------------------------------------------------------

/// Whether kestrel.ini, which is read first, is no part of the run. It may leave a section open.
bool follows_unknown_file() { return !source_of(main_file).checked; }

/// A line that begins with "[", up to the "]".
std::string header_in(std::string_view line) {
  const std::size_t end = line.find(']');
  return end == std::string_view::npos ? without_value(line) : std::string(line.substr(0, end + 1));
}

/// The lines that follow look as if they stood under this header, which opens no section for a
/// `reason`. Returns what becomes of them.
std::string begin_unknown(const ReadPiece& piece, std::string_view header, const char* reason) {
  begin_lines();
  const char* const from = under == Under::none ? ", which is still open from the file before" : "";
  under = Under::unknown;
  why_wrong = header_in(header) + reason;
  if (actual_section == 255 && follows_unknown_file())
    return "the lines after it count for the section that the file before leaves open, or for none";
  const std::string_view open = actual_section == 255 ? "" : section_name(piece);
  return open.empty() ? "the lines after it have no effect, and a save drops them"
                      : format(
                            "the lines after it count for [%s]%s, and a save drops those that it "
                            "does not know",
                            std::string(open).c_str(), from);
}

/// Whether a remark is nothing but the header of another section than the open one: somebody has
/// taken the header away, but perhaps not the lines under it.
bool is_header_remark(const ReadPiece& piece, std::string_view text) {
  text.remove_prefix(1);
  text = trimmed(text);
  if (!text.starts_with('[') || !text.ends_with(']')) return false;
  text = text.substr(1, text.size() - 2);
  const auto& names = SectionNames[source->file];
  return text != section_name(piece) && !text.empty() &&
         std::find(std::begin(names), std::end(names), text) != std::end(names);
}

/// A line that the reader skips. `#` begins no remark here, but the writer of the line meant one.
void check_skipped(const ReadPiece& piece) {
  const std::string_view text = trimmed(piece.line);
  if (text.empty()) return;
  if (text[0] == ';' || text[0] == '#') {
    if (is_own_remark(piece.line)) return;
    add(Class::remark, piece.number);
    if (under != Under::known || !is_header_remark(piece, text)) return;
    header_remark = piece.number;
    remarked_header = trimmed(text.substr(1));
  } else if (piece.line[0] == '\a') {
    add(Class::bell_line, piece.number);
  } else if (blanks.find(piece.line[0]) != std::string_view::npos) {
    const bool header = text[0] == '[';
    add(Class::indented, piece.number,
        {.other = header ? ". Now " + begin_unknown(piece, text, " is indented") : ""});
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
  std::string_view number = name.substr(prefix.size());
  if (number.find_first_not_of(digits) != std::string_view::npos) return false;
  number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
  return number.size() > 2 || (!number.empty() && std::stoi(std::string(number)) >= count);
}

// --- Headers -------------------------------------------------------------------------------------

void check_opened(const ReadPiece& piece) {
  begin_lines();
  const std::string_view name = section_name(piece);
  header_remark = 0;
  under = piece.continues ? Under::hidden : Under::known;
  if (piece.continues) {
    why_wrong = format("line %d holds the header [%s]", piece.number, std::string(name).c_str());
  }
  const std::string_view rest = trimmed(piece.line.substr(name.size() + 2));
  if (!rest.empty())
    add(Class::after_header, piece.number,
        {.section = std::string(name), .before = without_value(rest)});
  const Family& family = *piece.family;
  if (piece.index >= family.stored) {
    add(Class::no_room, piece.number,
        {.section = std::string(name), .other = format("%s%02d", family.name, family.stored - 1)});
  }
  int& first = source->headers[static_cast<std::size_t>(piece.section)];
  if (first != 0)
    add(Class::section_twice, piece.number,
        {.section = std::string(name), .other = std::to_string(first)});
  else
    first = piece.number;
}

void check_unknown_header(const ReadPiece& piece) {
  header_remark = 0;
  const std::size_t end = piece.line.find(']');
  const bool closed = end != std::string_view::npos;
  const std::string fate =
      begin_unknown(piece, piece.line, closed ? " is not known" : " has no effect");
  if (!closed) {
    add(Class::unclosed_header, piece.number, {.before = without_value(piece.line), .other = fate});
    return;
  }
  const std::string_view name = piece.line.substr(1, end - 1);
  std::vector<std::string_view> names;
  for (const auto& slot : SectionNames[source->file]) {
    if (*slot != '\0') names.emplace_back(slot);
  }
  for (const Family& family : families_of(source->file)) {
    if (family.count == 0 || !is_too_high(name, family.name, family.count)) continue;
    add(Class::too_many, piece.number,
        {.section = std::string(name),
         .other = format("(the last is %s%02d): ", family.name, family.count - 1) + fate});
    return;
  }
  add(Class::unknown_section, piece.number,
      {.before = std::string(name), .other = fate + hint(nearest_name(name, names))});
}

// --- Keys ----------------------------------------------------------------------------------------

/// The events of a group from 16 on have the key names of the line before.
bool has_borrowed_row(const ReadPiece& piece) {
  constexpr int events_with_row = 16;
  return source->file == group_file && piece.family == &families_of(group_file)[group_events] &&
         piece.index >= events_with_row;
}

/// A line that counts for no section. A header that has no effect has a finding for all lines under
/// it.
void add_orphan(const ReadPiece& piece) {
  if (under == Under::unknown) return;
  const bool unknown = piece.fate == Fate::orphan && follows_unknown_file();
  add(Class::orphan, piece.number,
      {.before = without_value(piece.line),
       .other = unknown ? "it counts for the section that the file before leaves open, or for none"
                        : "it has no effect, and a save drops it"});
}

/// A key that has no effect.
void check_unknown_key(const ReadPiece& piece) {
  if (under == Under::none || under == Under::unknown || piece.family == nullptr) {
    add_orphan(piece);
    return;
  }
  const std::string key(piece.line.substr(0, piece.line.find('=')));
  const std::string section(section_name(piece));
  std::vector<std::string_view> names;
  for (const Field& field : piece.family->fields) names.emplace_back(field.key);
  const bool is_key = std::find(names.begin(), names.end(), key) != names.end();
  const bool is_list =
      source->file == group_file && piece.family == &families_of(group_file)[group_members];
  if (is_key && has_borrowed_row(piece)) {
    add(Class::wrong_row, piece.number,
        {.section = section, .key = key, .other = format("\"%s\" has no effect", key.c_str())});
  } else if (is_list && is_too_high(key, "UPS_", member_count)) {
    add(Class::too_many, piece.number,
        {.section = section,
         .key = key,
         .other = format("(the last is UPS_%02d): it has no effect, and a save drops it",
                         member_count - 1)});
  } else {
    const std::string_view nearest = nearest_name(key, names);
    add(Class::unknown_key, piece.number,
        {.section = section,
         .key = without_value(key),
         .other = nearest == trimmed(key) ? ". Leave out the blank before \"=\"" : hint(nearest)});
  }
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

/// Most texts are of this kind, and have nothing to be checked.
bool is_plain(std::string_view text) {
  bool odd = false;
  for (const char byte : text) odd |= byte < ' ' || byte > '~';
  return !odd;
}

void add_value(Class kind, const ReadPiece& piece, std::string_view before, std::string_view after,
               std::string other = {}) {
  add(kind, piece.number,
      {.section = std::string(section_name(piece)),
       .key = piece.field->key,
       .before = std::string(before),
       .after = std::string(after),
       .other = std::move(other)});
}

/// A blank before the first quote ends the value there, however much follows.
bool begins_with_blank(const ReadPiece& piece) {
  const std::size_t quote = piece.written.find('"');
  return quote != 0 && quote != std::string_view::npos &&
         trimmed(piece.written.substr(0, quote)).empty();
}

/// The quotes of a value. Returns whether it goes on after the quote at which it ends.
bool check_quotes(const ReadPiece& piece) {
  const std::string_view raw = piece.written;
  const bool opened = raw.starts_with('"');
  const std::size_t end = raw.find('"', opened ? 1 : 0);
  if (end == std::string_view::npos) {
    if (opened) add_value(Class::unclosed_quote, piece, raw, piece.value);
    return false;
  }
  const std::string_view rest = trimmed(raw.substr(end + 1));
  if (rest.find('"') != std::string_view::npos || (!opened && !rest.empty())) {
    std::string_view text = raw;
    if (opened) text = trimmed(text).substr(1);
    if (opened && text.ends_with('"')) text.remove_suffix(1);
    add_value(Class::quote_inside, piece, text, piece.value);
    return true;
  }
  if (!rest.empty()) add_value(Class::after_quote, piece, rest, piece.value);
  if (rest.empty() && !opened) add_value(Class::unclosed_quote, piece, raw, piece.value);
  return false;
}

/// Whether a text is written just as a save writes it.
bool is_usual(const ReadPiece& piece, const Field& field) {
  const std::string_view text = piece.written;
  return text.size() == piece.value.size() + 2 && text.front() == '"' && text.back() == '"' &&
         piece.value.size() <= field.width && is_plain(piece.value);
}

/// Whether a text without quotes seems to end before it does: at a remark, or at another quote.
bool seems_to_end(std::string_view text) {
  constexpr std::string_view starts[] = {" ;", " #", "\t;", "\t#"};
  constexpr std::string_view quotes[] = {"'", "\xE2\x80\x9C", "\xE2\x80\x9E"};
  return std::any_of(std::begin(starts), std::end(starts),
                     [text](std::string_view start) {
                       return text.find(start) != std::string_view::npos;
                     }) ||
         std::any_of(std::begin(quotes), std::end(quotes),
                     [text](std::string_view quote) { return text.starts_with(quote); });
}

void check_text(const ReadPiece& piece, const Field& field) {
  if (is_usual(piece, field)) return;
  const bool goes_on = check_quotes(piece);
  if (piece.written.find('"') == std::string_view::npos && seems_to_end(piece.value))
    add_value(Class::unquoted, piece, piece.value, piece.value);
  const std::string_view raw = piece.written;
  const bool quoted = raw.starts_with('"') && raw.find('"', 1) != std::string_view::npos;
  const bool edges = !quoted && trimmed(piece.value) != piece.value;
  if (edges && !goes_on) add_value(Class::blanks_taken, piece, raw, piece.value);
  const std::string_view kept = piece.value.substr(0, field.width);
  if (kept != piece.value) add_value(Class::text_cut, piece, piece.value, kept);
  if (is_plain(kept)) return;
  if (!is_utf8(kept)) {
    add_value(Class::not_utf8, piece, kept, kept);
  } else if (const std::string_view shown = edges ? trimmed(kept) : kept;
             printable(shown) != shown) {
    add_value(Class::control_bytes, piece, kept, kept);
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

/// Whether a value is written just as a save writes the number that is stored.
bool is_usual(std::string_view text, unsigned number) {
  constexpr std::size_t most_digits = 5;
  if (text.empty() || text.size() > most_digits || (text[0] == '0' && text.size() > 1))
    return false;
  unsigned value = 0;
  for (const char byte : text) {
    const auto digit = static_cast<unsigned>(byte - '0');
    if (digit > 9) return false;
    value = 10 * value + digit;
  }
  return value == number;
}

void check_number(const ReadPiece& piece, const Field& field) {
  const unsigned number = number_at(field, piece.entry);
  if (is_usual(piece.written, number) && !(field.is_switch && number > 1)) return;
  const std::string stored = std::to_string(number);
  bool negative;
  std::string_view rest;
  const std::string_view digits = digits_of(piece.value, negative, rest);
  const bool is_hexadecimal = digits == "0" && (rest.starts_with('x') || rest.starts_with('X'));
  if (digits.empty() || is_hexadecimal) {
    add_value(Class::not_a_number, piece, piece.value, stored);
    return;
  }
  if (!rest.empty()) add_value(Class::after_number, piece, rest, stored);
  check_quotes(piece);
  std::string written(digits);
  if (negative && digits != "0") written.insert(0, 1, '-');
  if (written != stored) {
    const std::size_t bits = field.width * 8;
    const unsigned long largest =
        field.kind == Kind::u8 || field.kind == Kind::low_u8 ? 255 : 65535;
    const bool fits = !negative && digits.size() <= 5 && std::stoul(std::string(digits)) <= largest;
    if (fits && field.is_switch)
      add_value(Class::shutdown_ignored, piece, written, stored);
    else if (fits)
      add_value(Class::default_written, piece, written, stored);
    else if (field.kind == Kind::low_u8)
      add_value(Class::low_8_bits, piece, written, stored);
    else
      add_value(Class::number_range, piece, written, stored, std::to_string(bits));
  }
  if (field.is_switch && number > 1) add_value(Class::not_a_switch, piece, stored, stored);
}

/// A value that was not written for the place that it is taken for.
void check_place(const ReadPiece& piece) {
  const std::string_view key = piece.line.substr(0, piece.line.find('='));
  const std::string section(section_name(piece));
  if (under == Under::unknown) {
    add_wrong(piece);
  } else if (under != Under::known) {
    add(under == Under::none ? Class::carried_section : Class::wrong_section, piece.number,
        {.section = section,
         .key = piece.field->key,
         .before = without_value(piece.line),
         .other = why_wrong});
  } else {
    add(Class::wrong_row, piece.number,
        {.section = section,
         .key = piece.field->key,
         .other = format("\"%s\" is taken for %s.%s", std::string(key).c_str(), section.c_str(),
                         piece.field->key)});
  }
}

/// A value that the reader has stored, or would have if the record had room for it.
void check_value(const ReadPiece& piece) {
  if (piece.fate == Fate::no_room) {
    // Under its own header, which has a finding, the line needs none.
    if (under != Under::known) add_orphan(piece);
    return;
  }
  if (header_remark != 0) {
    add(Class::header_remark, header_remark,
        {.section = std::string(section_name(piece)), .before = remarked_header});
    header_remark = 0;
  }
  if (under != Under::known || !piece.own_names) check_place(piece);
  const int key = key_number(*piece.family, *piece.field);
  int& counts = source->values[place_in_values(piece.section, key)];
  if (counts != 0 && counts != piece.number) add_repeated(piece, counts);
  counts = piece.number;
  if (under == Under::unknown) return;  // what matters is the header
  const bool is_text = piece.field->kind == Kind::text;
  if (begins_with_blank(piece))
    add_value(Class::blank_before_quote, piece, piece.written,
              is_text ? piece.value : std::to_string(number_at(*piece.field, piece.entry)));
  else if (is_text)
    check_text(piece, *piece.field);
  else
    check_number(piece, *piece.field);
}

// --- Pieces --------------------------------------------------------------------------------------

/// A line of several pieces has one finding for all of them, and one for each that has an effect.
void check_continuation(const ReadPiece& piece) {
  const bool has_effect = piece.fate == Fate::taken || piece.fate == Fate::opened;
  if (has_effect) {
    add(Class::long_line_taken, piece.number, {.before = without_value(piece.line)});
  } else if (last_long_line != piece.number && !trimmed(piece.line).empty()) {
    add(Class::long_line, piece.number);
    last_long_line = piece.number;
  }
}

/// A NUL byte ends the text.
bool has_nul(const ReadPiece& piece) {
  return piece.line.size() + (piece.bytes.ends_with('\n') ? 1 : 0) != piece.bytes.size();
}

/// What is wrong with the bytes of a line, whatever it says.
void check_bytes(const ReadPiece& piece) {
  if (has_nul(piece) && last_nul_line != piece.number) {
    last_nul_line = piece.number;
    add(Class::nul_byte, piece.number);
  }
  if (!carriage_returns && piece.line.ends_with('\r') && piece.bytes.ends_with('\n')) {
    carriage_returns = true;
    add(Class::carriage_return, piece.number);
  }
}

void begin_file(Source& next) {
  begin_lines();
  source = &next;
  under = Under::none;
  header_remark = 0;
  last_long_line = 0;
  last_nul_line = 0;
  carriage_returns = false;
  utf16 = false;
}

/// The first line of a file that another editor has put a mark before. Returns whether the line
/// needs no further look.
bool check_mark(const ReadPiece& piece) {
  std::string_view line = piece.line;
  utf16 = (line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF")) && has_nul(piece);
  if (utf16) {
    add(Class::utf16, 1);
    return true;
  }
  if (!line.starts_with(mark)) return false;
  line.remove_prefix(mark.size());
  if (line.starts_with('[')) {
    add(Class::mark_before_header, 1,
        {.before = header_in(line), .other = begin_unknown(piece, line, " has no effect")});
    return true;
  }
  add(Class::byte_order_mark, 1);
  return is_remark_or_indented(line);
}

void listen(int file, const ReadPiece& piece) {
  if (findings_are_full()) return;
  Source& now = source_of(file, file == group_file ? g_index : 0);
  if (source != &now) begin_file(now);
  source->lines = piece.number;
  if (piece.number == 1 && !piece.continues && check_mark(piece)) return;
  // In UTF-16 every line but the first begins with a NUL byte.
  if (utf16 && piece.fate == Fate::skipped && piece.line.empty()) return;
  check_bytes(piece);
  if (piece.continues) check_continuation(piece);

  switch (piece.fate) {
    case Fate::opened:
      check_opened(piece);
      return;
    case Fate::not_opened:
      if (!piece.continues) check_unknown_header(piece);
      return;
    case Fate::taken:
    case Fate::no_room:
      check_value(piece);
      return;
    default:
      break;
  }
  if (piece.continues) return;
  if (piece.fate == Fate::skipped || is_remark_or_indented(piece.line))
    check_skipped(piece);
  else if (piece.line.find('=') == std::string_view::npos || piece.line[0] == '=')
    add(Class::no_equals, piece.number, {.before = without_value(piece.line)});
  else
    check_unknown_key(piece);
}

}  // namespace

Listening::Listening() {
  source = nullptr;
  piece_listener = listen;
}
