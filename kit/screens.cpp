#include "kit/screens.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "tui/columns.h"
#include "tui/format.h"
#include "tui/menu.h"
#include "tui/terminal.h"

namespace {

constexpr int standard_frame = 5;
constexpr char value_gap[] = "     ";

int used = 0;  // columns of the present line

// --- Rows ---------------------------------------------------------------------------------------

bool holds(Test test, const Subject& subject) { return test == nullptr || test(subject); }

std::span<const Row> rows_of(const Screen& screen, const Subject& subject) {
  return screen.rows_of == nullptr ? screen.rows : screen.rows_of(subject);
}

void* entry_of(const Screen& screen, const Subject& subject) {
  return screen.entry == nullptr ? &INI1 : screen.entry(subject);
}

/// The row of an item after the list, or null.
const Row* row_of(const Screen& screen, const Subject& subject, int item) {
  item -= screen.list.count;
  for (const Row& row : rows_of(screen, subject)) {
    if (holds(row.present, subject) && --item == 0) return &row;
  }
  return nullptr;
}

int last_item(const Screen& screen, const Subject& subject) {
  int last = screen.list.count;
  for (const Row& row : rows_of(screen, subject)) last += holds(row.present, subject) ? 1 : 0;
  return last;
}

bool live(const Row& row, const Subject& subject) {
  return row.act != Act::rule && row.act != Act::remark && holds(row.live, subject);
}

bool bright(const Row& row, const Subject& subject) {
  if (row.shown != nullptr) return row.shown(subject);
  return row.act == Act::remark || live(row, subject);
}

bool selectable(const Screen& screen, const Subject& subject, int item) {
  if (item <= screen.list.count) return true;
  const Row* row = row_of(screen, subject, item);
  return row != nullptr && live(*row, subject);
}

text::Id label_of(const Row& row, const Subject& subject) {
  return row.label_of == nullptr ? row.label : row.label_of(subject);
}

bool is_on(const Row& row, const void* entry, const Subject& subject) {
  return row.is_on == nullptr ? number_at(row.field, entry) != 0 : row.is_on(subject);
}

/// What a row shows after its label, unless it is a flag.
std::string value_of(const Row& row, const void* entry, const Subject& subject) {
  if (row.value != nullptr) return row.value(subject);
  if (row.act == Act::words) return std::string(text_at(row.field, entry));
  return format("%u", number_at(row.field, entry));
}

// --- Numbers of lines ---------------------------------------------------------------------------

/// The digits of "12", or of "6.2" before its dot.
int digits_of(const char* number) { return static_cast<int>(std::strcspn(number, ".")); }

/// The digits of the longest number on the screen.
int most_digits(const Screen& screen, const Subject& subject) {
  const int listed = screen.list.count == 0 ? 0 : subject.first + screen.list.count;
  int digits = listed < 10 ? 1 : 2;
  for (const Row& row : rows_of(screen, subject)) digits = std::max(digits, digits_of(row.number));
  return digits;
}

/// The blanks for the arrow, the number and what separates it from the label. Each part of a number
/// such as "2.3.1" moves the line by four columns.
std::string lead(const char* number, int digits) {
  constexpr int arrow_columns = 6;
  constexpr int part_columns = 4;
  const auto parts = std::count(number, number + std::strlen(number), '.');
  const auto blanks =
      arrow_columns + part_columns * parts + std::max(0, digits - digits_of(number));
  return std::string(static_cast<std::size_t>(blanks), ' ') + number + " - ";
}

std::string lead(const Row& row, int digits) {
  if (row.act == Act::remark) return "";
  return lead(row.number, row.aligned ? digits : 0) + row.mark;
}

std::string flag_word(bool is_on, FlagWords words) {
  if (words == FlagWords::on_off) return shown_text(is_on ? text::flag_on : text::flag_off);
  const std::string word = shown_text(is_on ? text::yes : text::no);
  return words == FlagWords::yes_no_letter ? std::string(first_character(word)) : word;
}

// --- Drawing ------------------------------------------------------------------------------------

void print_row_value(const Row& row, const void* entry, const Subject& subject) {
  if (row.bracketed) {
    print_cut(std::string(value_gap) + "[", true);
    print_value(value_of(row, entry, subject), true);
    print_cut("]");
  } else {
    print_value(value_gap + value_of(row, entry, subject));
  }
}

/// The word of a flag stays whole beside a label that is cut: Enter changes it without a question.
void print_flag_row(const std::string& label, const Row& row, bool is_on) {
  constexpr int brackets = 2;
  print_before(columns(value_gap) + columns(flag_word(is_on, row.flag_words)) + brackets, label);
  put(value_gap);
  print_flag(is_on, row.flag_words);
}

void print_row(const Row& row, const void* entry, const Subject& subject, int digits) {
  if (row.act == Act::rule) {
    print_line(0);
    return;
  }
  const bool is_bright = bright(row, subject);
  const bool has_value = row.act != Act::open && row.act != Act::back && row.act != Act::remark;
  const std::string label =
      lead(row, digits) + shown_text(label_of(row, subject)) + (has_value && row.colon ? ":" : "");
  begin_line();
  if (!is_bright) {
    print_escapeseq(escape::dim);
    print_cut(label);
    print_escapeseq(escape::normal);
  } else if (row.act == Act::flag) {
    print_flag_row(label, row, is_on(row, entry, subject));
  } else {
    print_cut(label, has_value);
    if (has_value) print_row_value(row, entry, subject);
  }
}

void print_list(const Screen& screen, const Subject& subject, int digits) {
  const int before = screen.list.restarts ? 0 : subject.first;
  for (int item = 1; item <= screen.list.count; ++item) {
    begin_line();
    print_cut(lead(format("%d", before + item).c_str(), digits));
    screen.list.line(subject, item);
  }
}

int base_of(const Screen& screen) {
  return arrow_base(screen.start_row) + screen.frame_lines - standard_frame;
}

// --- Commands -----------------------------------------------------------------------------------

/// Runs a command and returns the arrow's next item, 0 to leave.
int carry_out(const Command& command, const Subject& subject, int item) {
  if (command.go != nullptr) return command.go(subject, item);
  if (command.screen != nullptr) run_screen(*command.screen, subject);
  if (command.run != nullptr) command.run(subject);
  return item;
}

bool has_command(const Row& row) {
  return row.command.run != nullptr || row.command.go != nullptr || row.command.screen != nullptr;
}

/// What Enter does on a row that has no command.
void edit_field(const Row& row, void* entry) {
  const Field& field = row.field;
  if (row.act == Act::words) {
    edit_text_field(row.label, bytes_at(field, entry), field.width);
  } else if (row.act == Act::number) {
    set_number_at(field, entry, edit_number(row.label, number_at(field, entry), row.low, row.high));
  } else if (row.act == Act::flag) {
    set_number_at(field, entry, number_at(field, entry) == 0 ? 1 : 0);
  }
}

int enter_row(const Screen& screen, const Subject& subject, int item) {
  const Row& row = *row_of(screen, subject, item);
  if (row.act == Act::back) return 0;
  if (has_command(row))
    item = carry_out(row.command, subject, item);
  else
    edit_field(row, entry_of(screen, subject));
  if (row.settle != nullptr) row.settle(subject);
  if (row.leaving) return 0;
  return screen.entered == nullptr ? item : screen.entered(subject, item);
}

int enter_list(const List& list, const Subject& subject, int item) {
  list.enter(subject, item);
  return list.leaves ? 0 : item;
}

}  // namespace

void print_screen(const Screen& screen, const Subject& subject, int selected) {
  if (screen.frame != nullptr)
    screen.frame(subject);
  else
    print_frame(screen.start_row,
                shown_text(screen.title_of == nullptr ? screen.title : screen.title_of(subject)));
  const int digits = most_digits(screen, subject);
  print_list(screen, subject, digits);
  const void* entry = entry_of(screen, subject);
  for (const Row& row : rows_of(screen, subject)) {
    if (holds(row.present, subject)) print_row(row, entry, subject, digits);
  }
  print_frame_end(screen.start_row, base_of(screen) + last_item(screen, subject));
  print_arrow(selected, screen.arrow_column, base_of(screen));
}

void run_screen(const Screen& screen, const Subject& subject) {
  Menu menu;
  menu.last = [&] { return last_item(screen, subject); };
  menu.selectable = [&](int item) { return selectable(screen, subject, item); };
  menu.draw = [&](int item) { print_screen(screen, subject, item); };
  menu.move = [&](int from, int to) { move_arrow(from, to, screen.arrow_column, base_of(screen)); };
  menu.enter = [&](int item) {
    return item <= screen.list.count ? enter_list(screen.list, subject, item)
                                     : enter_row(screen, subject, item);
  };
  if (screen.step != nullptr) {
    menu.step = [&](int from, int to) { return screen.step(subject, from, to); };
  }
  run_menu(menu);
}

void begin_line() {
  put("\n\r");
  used = 0;
}

void print_cut(std::string_view text, bool goes_on) {
  put(cut_marked(text, line_columns() - used, goes_on));
  used += columns(text);
}

void print_value(std::string_view text, bool goes_on) {
  print_escapeseq(escape::value);
  print_cut(printable(text), goes_on);
  print_escapeseq(escape::normal);
}

void print_before(int reserve, std::string_view text) {
  put(cut_marked(text, line_columns() - used - reserve));
}

void print_flag(bool is_on, FlagWords words) {
  put("[");
  print_escapeseq(is_on ? escape::on : escape::off);
  put(flag_word(is_on, words));
  print_escapeseq(escape::normal);
  put("]");
}
