#include "menus/screen_kit.h"

#include <cstdarg>
#include <cstdio>

#include "lang/lang_text.h"
#include "tui/columns.h"
#include "tui/editors.h"
#include "tui/menu.h"
#include "tui/terminal.h"

namespace {

constexpr int screen_columns = 80;
constexpr int standard_frame = 5;
constexpr char value_gap[] = "     ";

void* entry_of(const Screen& screen, const Subject& subject) {
  return screen.entry == nullptr ? &INI1 : screen.entry(subject);
}

bool present(const Row& row, const Subject& subject) {
  return row.present == nullptr || row.present(subject);
}

/// The row of an item behind the list, or null.
const Row* row_of(const Screen& screen, const Subject& subject, int item) {
  item -= screen.listed;
  for (const Row& row : screen.rows) {
    if (present(row, subject) && --item == 0) return &row;
  }
  return nullptr;
}

int last_item(const Screen& screen, const Subject& subject) {
  int last = screen.listed;
  for (const Row& row : screen.rows) last += present(row, subject) ? 1 : 0;
  return last;
}

bool live(const Row& row, const Subject& subject) {
  return row.act != Act::rule && (row.live == nullptr || row.live(subject));
}

bool shown(const Row& row, const Subject& subject) {
  return row.shown == nullptr ? live(row, subject) : row.shown(subject);
}

bool selectable(const Screen& screen, const Subject& subject, int item) {
  if (item <= screen.listed) return true;
  const Row* row = row_of(screen, subject, item);
  return row != nullptr && live(*row, subject);
}

bool is_on(const Row& row, const void* entry, const Subject& subject) {
  return row.is_on != nullptr ? row.is_on(subject) : number_at(row.field, entry) != 0;
}

/// What a row shows behind its label, but for flags.
std::string value_of(const Row& row, const void* entry, const Subject& subject) {
  if (row.value != nullptr) return row.value(subject);
  if (row.act == Act::text) return std::string(text_at(row.field, entry));
  return format("%u", number_at(row.field, entry));
}

void print_row(const Row& row, const void* entry, const Subject& subject) {
  if (row.act == Act::rule) {
    print_line(0);
    return;
  }
  const bool bright = shown(row, subject);
  const bool has_value = row.act != Act::open && row.act != Act::back;
  std::string head = std::string(row.lead) + LangText[row.label];
  if (has_value && row.colon) head += ":";
  put("\n\r");
  if (!bright) print_escapeseq(dim);
  print_cut(head, 0);
  if (!bright) {
    print_escapeseq(normal);
  } else if (row.act == Act::flag) {
    put(value_gap);
    print_flag(is_on(row, entry, subject), row.words);
  } else if (has_value) {
    std::string shown_value = value_of(row, entry, subject);
    if (row.bracketed) {
      put(value_gap);
      put("[");
      print_value(shown_value, columns(head) + static_cast<int>(sizeof value_gap) + 1);
      put("]");
    } else {
      print_value(value_gap + shown_value, columns(head));
    }
  }
}

int base_of(const Screen& screen) {
  return arrow_base(screen.start_row) + screen.frame_lines - standard_frame;
}

void toggle(const Row& row, void* entry, const Subject& subject) {
  if (row.toggle != nullptr)
    row.toggle(subject);
  else
    set_number_at(row.field, entry, number_at(row.field, entry) == 0 ? 1 : 0);
}

/// What Enter does on a row; returns the item of the arrow then, 0 to leave.
int enter_row(const Screen& screen, const Subject& subject, int item) {
  const Row* row = row_of(screen, subject, item);
  void* entry = entry_of(screen, subject);
  switch (row->act) {
    case Act::back:
      return 0;
    case Act::text:
      edit_text_field(row->label, bytes_at(row->field, entry), row->field.width);
      break;
    case Act::number:
      set_number_at(row->field, entry,
                    edit_number(row->label, number_at(row->field, entry), row->low, row->high));
      break;
    case Act::flag:
      toggle(*row, entry, subject);
      break;
    default:
      if (row->open != nullptr) row->open(subject);
      break;
  }
  if (row->settle != nullptr) row->settle(subject);
  return row->enter == nullptr ? item : row->enter(subject, item);
}

/// The screen of an editor as far as the value that is there.
void print_current(text::Id label, std::string_view current) {
  menu_insert_value(LangText[label]);
  put(printable(current));
  print_escapeseq(normal);
}

}  // namespace

void print_screen(const Screen& screen, const Subject& subject, int selected) {
  if (screen.frame != nullptr)
    screen.frame(subject);
  else
    print_frame(screen.start_row,
                LangText[screen.title_of == nullptr ? screen.title : screen.title_of(subject)]);
  for (int item = 1; item <= screen.listed; ++item) {
    put("\n\r");
    screen.list_line(subject, item);
  }
  const void* entry = entry_of(screen, subject);
  for (const Row& row : screen.rows) {
    if (present(row, subject)) print_row(row, entry, subject);
  }
  print_frame_end(screen.start_row, base_of(screen) + last_item(screen, subject));
  print_arrow(selected, screen.arrow_column, base_of(screen));
}

void run_screen(const Screen& screen, const Subject& subject, int selected) {
  Menu menu;
  menu.last = [&] { return last_item(screen, subject); };
  menu.selectable = [&](int item) { return selectable(screen, subject, item); };
  menu.draw = [&](int item) { print_screen(screen, subject, item); };
  menu.move = [&](int from, int to) { move_arrow(from, to, screen.arrow_column, base_of(screen)); };
  menu.enter = [&](int item) {
    return item <= screen.listed ? screen.list_enter(subject, item)
                                 : enter_row(screen, subject, item);
  };
  if (screen.step != nullptr) {
    menu.step = [&](int from, int to) { return screen.step(subject, from, to); };
  }
  run_menu(menu, selected);
}

void print_list_number(int number, int columns) {
  print("%*d - ", columns - static_cast<int>(sizeof " - " - 1), number);
}

void print_cut(std::string_view text, int used) {
  // The last column stays free: some terminals break the line as soon as it is written.
  put(cut_columns(text, screen_columns - 1 - used));
}

void print_value(std::string_view text, int used) {
  print_escapeseq(value);
  print_cut(printable(text), used);
  print_escapeseq(normal);
}

std::string flag_word(bool is_on, Words words) {
  if (words == Words::on_off) return LangText[is_on ? text::flag_on : text::flag_off];
  const std::string_view word = LangText[is_on ? text::yes : text::no];
  return std::string(words == Words::yes_no_letter ? first_character(word) : word);
}

void print_flag(bool is_on, Words words) {
  put("[");
  print_escapeseq(is_on ? on : off);
  put(flag_word(is_on, words));
  print_escapeseq(normal);
  put("]");
}

std::string format(const char* form, ...) {
  char text[512];
  va_list arguments;
  va_start(arguments, form);
  std::vsnprintf(text, sizeof text, form, arguments);
  va_end(arguments);
  return text;
}

void begin_entry(text::Id label, std::string_view current) {
  print_current(label, current);
  print_line(0);
  put("\n\r");
  print_escapeseq(show_cursor);
}

void begin_name_entry(text::Id label, std::string_view current, text::Id deletion_hint) {
  print_current(label, current);
  put("\n\r");
  for (const text::Id hint : {text::keep_name_hint, deletion_hint}) {
    put("\n\r  ");
    print_cut(LangText[hint], 2);
  }
  put("\n\r");
  print_escapeseq(show_cursor);
}

void end_entry() {
  print_escapeseq(hide_cursor);
  print_escapeseq(normal);
}

void ask_line(char* bytes, std::size_t size, const char* prompt) {
  {
    const LineMode lines;
    get_str(bytes, size, prompt);
  }
  end_entry();
}

void edit_text_field(text::Id label, char* bytes, std::size_t size) {
  begin_entry(label, {bytes, strnlen(bytes, size)});
  ask_line(bytes, size, LangText[text::new_value]);
}

unsigned edit_number(text::Id label, unsigned current, unsigned low, unsigned high,
                     const char* prompt_end) {
  begin_entry(label, format("%u", current));
  unsigned number;
  {
    const LineMode lines;
    print("\n\r%s [%u-%u]%s", LangText[text::new_value], low, high, prompt_end);
    print_escapeseq(value);
    number = get_int1(static_cast<std::uint16_t>(low), static_cast<std::uint16_t>(high),
                      static_cast<std::uint16_t>(current), 0, LangText[text::out_of_range]);
  }
  end_entry();
  return number;
}

void show_refusal(text::Id message) { print_refusal(LangText[message]); }
