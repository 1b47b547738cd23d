#include "kit/value_entry.h"

#include <cstdint>
#include <cstring>

#include "kit/screens.h"
#include "lang/lang_text.h"
#include "tui/columns.h"
#include "tui/editors.h"
#include "tui/format.h"
#include "tui/terminal.h"

namespace {

/// The screen of an editor, up to the present value.
void print_current(text::Id label, std::string_view current) {
  menu_insert_value(shown_text(label).c_str());
  put(printable(current));
  print_escapeseq(escape::normal);
}

void begin_entry(text::Id label, std::string_view current) {
  print_current(label, current);
  print_line(0);
  put("\n\r");
  print_escapeseq(escape::show_cursor);
}

}  // namespace

void edit_text_field(text::Id label, char* bytes, std::size_t size) {
  ask_text(label, {bytes, strnlen(bytes, size)}, bytes, size);
}

unsigned edit_number(text::Id label, unsigned current, unsigned low, unsigned high,
                     const char* prompt_end) {
  begin_entry(label, format("%u", current));
  unsigned number;
  {
    const LineMode lines;
    print("\n\r%s [%u-%u]%s", shown_text(text::new_value).c_str(), low, high, prompt_end);
    print_escapeseq(escape::value);
    number =
        get_int1(static_cast<std::uint16_t>(low), static_cast<std::uint16_t>(high),
                 static_cast<std::uint16_t>(current), 0, shown_text(text::out_of_range).c_str());
  }
  end_entry();
  return number;
}

void ask_name(text::Id label, std::string_view current, text::Id deletion_hint, char* bytes,
              std::size_t size) {
  print_current(label, current);
  put("\n\r");
  for (const text::Id hint : {text::keep_name_hint, deletion_hint}) {
    begin_line();
    print_cut("  ");
    print_cut(shown_text(hint));
  }
  put("\n\r");
  print_escapeseq(escape::show_cursor);
  ask_line(bytes, size, shown_text(text::new_value).c_str());
}

void ask_text(text::Id label, std::string_view current, char* bytes, std::size_t size) {
  begin_entry(label, current);
  ask_line(bytes, size, shown_text(text::new_value).c_str());
}

void ask_line(char* bytes, std::size_t size, const char* prompt) {
  {
    const LineMode lines;
    get_str(bytes, size, prompt);
  }
  end_entry();
}

void end_entry() {
  print_escapeseq(escape::hide_cursor);
  print_escapeseq(escape::normal);
}

void show_refusal(text::Id message) { print_refusal(shown_text(message).c_str()); }
