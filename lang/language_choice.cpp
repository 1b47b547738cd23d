#include "lang/language_choice.h"

#include <algorithm>
#include <cstdlib>
#include <string>

#include "config/line_reader.h"
#include "config/record.h"
#include "lang/lang_text.h"
#include "lang/text_ids.h"
#include "tui/columns.h"
#include "tui/diag.h"
#include "tui/editors.h"
#include "tui/format.h"
#include "tui/menu.h"
#include "tui/screen.h"
#include "tui/terminal.h"

namespace {

/// Reads the first line of a language file into `name`. Returns false when there is no such file.
bool read_language_name(int number, char (&name)[language_name_size]) {
  constexpr std::size_t first_line = 31;
  LineReader file(program_path(format("lang_%02d.ini", number)).c_str());
  if (!file.opened()) return false;
  std::size_t length;
  if (file.next(name, first_line, length) && length != 0) {
    // The last character goes. It is the line end, or the one too many of a longer name.
    name[cut_bytes({name, length}, length - 1).size()] = '\0';
  }
  return true;
}

int listed_languages(const LanguageNames& names) {
  int count = 1;  // language 0 is listed even without a name
  while (count < language_count && names[static_cast<std::size_t>(count)][0] != '\0') ++count;
  return count;
}

// If the languages do not fit below the small frame, the list scrolls with the arrow.
constexpr int screen_rows = 24;
constexpr int list_start_row = 3;
constexpr int lines_below = 4;          // rule, back item, blank line, rule
constexpr int compact_lines_below = 3;  // rule, back item, rule
constexpr int arrow_column = 3;

/// What the screen shows of the list: the first language, how many, and below which frame.
struct Layout {
  int start_row;
  int first;
  int shown;

  int base() const { return arrow_base(start_row); }
};

Layout layout_of(int count, int selected) {
  if (arrow_base(list_start_row) + count + lines_below <= screen_rows) {
    return {list_start_row, 0, count};
  }
  const int room = screen_rows - arrow_base(compact) - compact_lines_below;
  const int shown = std::min(count, room);
  return {compact, std::clamp(selected - shown, 0, count - shown), shown};
}

/// Returns the line of the list that shows `item`, counted from 1.
int line_of(const Layout& layout, int count, int item) {
  return item <= count ? item - layout.first : layout.shown + item - count;
}

}  // namespace

void load_language_names(LanguageNames& names) {
  names = {};
  for (int i = 0; i < language_count; ++i)
    read_language_name(i, names[static_cast<std::size_t>(i)]);
}

void print_languages(const LanguageNames& names, int selected) {
  const int count = listed_languages(names);
  const Layout layout = layout_of(count, selected);
  print_frame(layout.start_row, shown_text(text::languages_title));
  for (int i = layout.first; i < layout.first + layout.shown; ++i) {
    print_item(printable(names[static_cast<std::size_t>(i)]));
  }
  print_line(0);
  print_item(shown_text(text::back));
  print_frame_end(layout.start_row, layout.base() + layout.shown + 2);
  print_arrow(line_of(layout, count, selected), arrow_column, layout.base());
}

void menu_languages(const LanguageNames& names) {
  const int count = listed_languages(names);
  const int back = count + 2;
  Menu menu;
  menu.last = [&] { return back; };
  menu.selectable = [&](int item) { return item != count + 1; };
  menu.draw = [&](int item) { print_languages(names, item); };
  menu.move = [&](int from, int to) {
    const Layout layout = layout_of(count, to);
    if (layout.first != layout_of(count, from).first) {
      print_languages(names, to);
    } else {
      move_arrow(line_of(layout, count, from), line_of(layout, count, to), arrow_column,
                 layout.base());
    }
  };
  menu.enter = [&](int item) {
    if (item <= count) INI1.system.Language = static_cast<std::uint8_t>(item - 1);
    return 0;
  };
  run_menu(menu);
}

void choice_language() {
  int count = 0;
  char name[language_name_size] = "";
  while (count < language_count && read_language_name(count, name)) {
    ++count;
    print("\n\r    %i. %s", count, printable(name).c_str());
  }
  const std::string prompt = format("\n\r [1-%d] : ", count);
  const LineMode lines;
  const auto choice = get_int(1, static_cast<std::uint16_t>(count), prompt.c_str(),
                              shown_text(text::out_of_range).c_str());
  INI.system.Language = static_cast<std::uint8_t>(choice - 1);
  // The working copy still has the language of the file. The start-up loads again, from `INI`.
  if (LoadText(harrier, static_cast<signed char>(INI1.system.Language)) != 0) {
    print("\n\rCannot load language strings file !");
    flush();
    std::exit(5);
  }
}
