#include "schedule/schedule_menus.h"

#include <algorithm>
#include <ctime>

#include "kit/screens.h"
#include "lang/lang_text.h"
#include "schedule/schedule_editor.h"
#include "schedule/schedule_texts.h"
#include "schedule/upcoming.h"
#include "tui/format.h"
#include "tui/menu.h"
#include "tui/terminal.h"

namespace {

// --- Upcoming actions ---------------------------------------------------------------------------

constexpr int arrow_column = 3;

enum UpcomingItem { more_item = 1, leave_item };

/// The row of an item after a list of `lines` lines. Each item has a rule above it.
int upcoming_row(int lines, int item) { return arrow_base(compact) + lines + 2 * item; }

/// Prints `mark` beside a row. `cursor_gotopos` reaches row 99, a cursor movement (ECMA-48 CUD)
/// goes on from there.
void put_at(int row, const char* mark) {
  constexpr int last_position = 99;
  row = row_in_sight(row);
  cursor_gotopos(std::clamp(row, 0, last_position), arrow_column, 0);
  if (row > last_position) print("\033[%dB", row - last_position);
  put(mark);
}

void print_upcoming_line(const std::tm& minute, const ScheduleEntry& entry) {
  constexpr int head_columns = 40;
  std::string line = format("%02d.%02d.%04d %02d:%02d ", minute.tm_mday, minute.tm_mon + 1,
                            minute.tm_year + 1900, minute.tm_hour, minute.tm_min) +
                     schedule_ups(entry);
  begin_line();
  print_cut(dopln(line, head_columns, " ") + schedule_action(entry));
}

void upcoming_actions(const Subject&) {
  std::int64_t from = std::time(nullptr);  // start of the period on the screen
  const std::int64_t end = upcoming_end(from);
  std::int64_t next = from;
  int lines = 0;
  Menu menu;
  menu.last = [] { return leave_item; };
  menu.selectable = [](int) { return true; };
  menu.draw = [&](int item) {
    next = from;
    lines = print_next_actions(&next, &end, item);
  };
  menu.move = [&](int from_item, int to) {
    put_at(upcoming_row(lines, from_item), "   ");
    put_at(upcoming_row(lines, to), "-->");
  };
  menu.enter = [&](int item) {
    if (item == leave_item) return 0;
    // The whole period has been shown, so the next frame is empty.
    from = next;
    return item;
  };
  run_menu(menu);
}

// --- The list -----------------------------------------------------------------------------------

void print_schedule_line(const Subject&, int item) {
  constexpr int name_columns = 16;
  constexpr int column = 25;
  const ScheduleEntry& entry = INI1.schedule[item - 1];
  if (entry.action == 0) {
    print_value(shown_text(text::unused));
    return;
  }
  std::string action = schedule_ups(entry);
  dopln(action, name_columns, " ") += schedule_keyword(entry);
  std::string time = schedule_short_time(entry);
  print_value(dopln(action, column, " ") + " " + dopln(time, column, " "));
}

void edit_schedule(const Subject&, int item) { sch_param(item - 1); }

constexpr Row schedule_list_rows[] = {
    rule,
    open("17", text::upcoming, upcoming_actions),
    rule,
    back,
};

constexpr Screen schedule_list_screen{
    .start_row = compact,
    .title = text::schedules_title,
    .list = {.count = schedule_count, .line = print_schedule_line, .enter = edit_schedule},
    .rows = schedule_list_rows};

}  // namespace

void print_sched_param(int selected) { print_screen(schedule_list_screen, {}, selected); }

void shed_param() { run_screen(schedule_list_screen); }

int print_next_actions(std::int64_t* start, const std::int64_t* end, int selected) {
  print_frame(compact, shown_text(text::upcoming_title));
  const int lines = next_actions(*start, *end, INI1, print_upcoming_line);
  for (const text::Id label : {text::show_more, text::back}) {
    print_line(0);
    print_item(shown_text(label));
  }
  print_frame_end(compact, upcoming_row(lines, leave_item));
  put_at(upcoming_row(lines, selected), "-->");
  return lines;
}
