#include "schedule/schedule_editor.h"

#include <functional>
#include <iterator>
#include <string_view>

#include "lang/lang_text.h"
#include "menus/screen_kit.h"
#include "schedule/calendar.h"
#include "schedule/schedule_texts.h"
#include "tui/editors.h"
#include "tui/menu.h"
#include "tui/terminal.h"
#include "ups/ups_line.h"

namespace {

constexpr int arrow_column = 3;

// --- Choosers -----------------------------------------------------------------------------------

/// Lets the operator choose one of `count` lines and returns its number, from 1 on.
int choose(int start_row, text::Id title, int count, const std::function<void(int)>& print_item) {
  int chosen = 0;
  const int base = arrow_base(start_row);
  Menu menu;
  menu.last = [=] { return count; };
  menu.selectable = [](int) { return true; };
  menu.draw = [&](int selected) {
    print_frame(start_row, LangText[title]);
    for (int item = 1; item <= count; ++item) {
      put("\n\r");
      print_item(item);
    }
    print_frame_end(start_row, base + count);
    print_arrow(selected, arrow_column, base);
  };
  menu.move = [=](int from, int to) { move_arrow(from, to, arrow_column, base); };
  menu.enter = [&](int item) {
    chosen = item;
    return 0;
  };
  run_menu(menu);
  return chosen;
}

int choose_text(text::Id title, int count, text::Id (*label)(int item)) {
  constexpr int number_columns = 10;
  return choose(2, title, count, [label](int item) {
    print("      %d - ", item);
    print_cut(LangText[label(item)], number_columns);
  });
}

// --- The items ----------------------------------------------------------------------------------

ScheduleEntry& entry_of(const Subject& subject) { return INI1.schedule[subject.index]; }

/// The rest of the entry stays until it is cleared on saving.
int delete_schedule(const Subject& subject, int) {
  entry_of(subject).action = 0;
  entry_of(subject).type = 0;
  return 0;
}

void choose_schedule_ups(const Subject& subject) {
  constexpr int number_columns = 11;
  const int slot = choose(0, text::choose_ups, ups_count,
                          [](int item) {
                            print_list_number(item);
                            print_value(ups_line(item - 1, LinkValues::edited), number_columns);
                          }) -
                   1;
  if (ups_in_use(slot)) entry_of(subject).ups = static_cast<std::uint16_t>(slot);
}

void choose_schedule_action(const Subject& subject) {
  entry_of(subject).action =
      static_cast<std::uint8_t>(choose_text(text::schedule_action, std::ssize(offered_actions),
                                            [](int item) { return offered_actions[item - 1]; }));
}

void choose_weekday(ScheduleEntry& entry) {
  constexpr int days = 7;
  const int day = choose_text(text::choose_day, days, [](int item) {
    return static_cast<text::Id>(text::weekday_first + item - 1);
  });
  entry.day = static_cast<std::uint8_t>(day - 1);
}

/// Asks on the screen of the time, below it.
void ask_day_of_month(ScheduleEntry& entry) {
  print("\n\r%s [1-31] : ", LangText[text::choose_day]);
  print_escapeseq(show_cursor);
  {
    const LineMode lines;
    entry.day =
        static_cast<std::uint8_t>(get_int1(1, 31, entry.day, 0, LangText[text::out_of_range]));
  }
  end_entry();
}

/// One way to repeat: its number in the record is its place in the table, from 1 on.
struct Repetition {
  text::Id name;
  text::Id hint;
  std::int32_t (*parse)(std::string_view typed);
  void (*ask_day)(ScheduleEntry& entry);
};

constexpr Repetition repetitions[] = {
    {text::once, text::once_hint, check_datetime, nullptr},
    {text::daily, text::time_hint, check_time, nullptr},
    {text::weekly, text::time_hint, check_time, choose_weekday},
    {text::monthly, text::time_hint, check_time, ask_day_of_month},
};

/// Asks until the time is valid, and returns it; 0 when nothing is typed.
std::int32_t ask_time(const Repetition& repetition) {
  for (;;) {
    constexpr int longest_time = 120;
    char typed[longest_time + 2] = "";
    print_frame(2, format("%s [%s]", LangText[text::enter_time], LangText[repetition.hint]));
    print_escapeseq(show_cursor);
    {
      const LineMode lines;
      get_str(typed, sizeof typed, LangText[text::new_value]);
    }
    end_entry();
    if (typed[0] == '\0') return 0;
    const std::int32_t time = repetition.parse(typed);
    if (time != 0) return time;
    show_refusal(text::time_refused);
  }
}

void choose_schedule_time(const Subject& subject) {
  const int type = choose_text(text::schedule_time, std::ssize(repetitions),
                               [](int item) { return repetitions[item - 1].name; });
  const Repetition& repetition = repetitions[type - 1];
  const std::int32_t time = ask_time(repetition);
  if (time == 0) return;
  ScheduleEntry& entry = entry_of(subject);
  entry.time = time;
  entry.type = static_cast<std::uint8_t>(type);
  if (repetition.ask_day != nullptr) repetition.ask_day(entry);
}

const Row schedule_rows[] = {
    {.act = Act::open, .lead = "      1 - ", .label = text::delete_entry, .enter = delete_schedule},
    {.act = Act::custom,
     .lead = "      2 - ",
     .label = text::ups_name,
     .value = [](const Subject& subject) { return schedule_ups(entry_of(subject)); },
     .open = choose_schedule_ups},
    {.act = Act::custom,
     .lead = "      3 - ",
     .label = text::schedule_action,
     .value = [](const Subject& subject) { return schedule_action(entry_of(subject)); },
     .open = choose_schedule_action},
    {.act = Act::custom,
     .lead = "      4 - ",
     .label = text::schedule_time,
     .value = [](const Subject& subject) { return schedule_time(entry_of(subject)); },
     .open = choose_schedule_time},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen schedule_screen{.start_row = 2, .title = text::schedule_title, .rows = schedule_rows};

}  // namespace

void sch_param(int index) { run_screen(schedule_screen, {.index = index}); }

void print_sch_param(int selected, int index) {
  print_screen(schedule_screen, {.index = index}, selected);
}
