#include "schedule/schedule_editor.h"

#include <iterator>
#include <string_view>

#include "lang/lang_text.h"
#include "menus/screen_kit.h"
#include "schedule/calendar.h"
#include "schedule/schedule_texts.h"
#include "tui/editors.h"
#include "tui/terminal.h"
#include "ups/ups_line.h"

namespace {

ScheduleEntry& entry_of(const Subject& subject) { return INI1.schedule[subject.index]; }

/// The rest of the entry stays until it is cleared on saving.
int delete_schedule(const Subject& subject, int) {
  entry_of(subject).action = 0;
  entry_of(subject).type = 0;
  return 0;
}

// --- Choosers: lists without a way back, which are left by choosing ------------------------------

void print_ups_choice(const Subject&, int item) { print_ups_line(item, LinkValues::edited); }

/// A free slot is no choice: the UPS stays.
int choose_ups(const Subject& subject, int item) {
  if (ups_in_use(item - 1)) entry_of(subject).ups = static_cast<std::uint16_t>(item - 1);
  return 0;
}

const Screen ups_chooser{.start_row = 0,
                         .title = text::choose_ups,
                         .listed = ups_count,
                         .list_line = print_ups_choice,
                         .list_enter = choose_ups};

void print_choice(int item, text::Id label) {
  print_list_number(item, short_number_columns);
  print_cut(LangText[label], short_number_columns);
}

void print_action_choice(const Subject&, int item) {
  print_choice(item, offered_actions[item - 1]);
}

int choose_action(const Subject& subject, int item) {
  entry_of(subject).action = static_cast<std::uint8_t>(item);
  return 0;
}

const Screen action_chooser{.start_row = 2,
                            .title = text::schedule_action,
                            .listed = std::size(offered_actions),
                            .list_line = print_action_choice,
                            .list_enter = choose_action};

void print_weekday_choice(const Subject&, int item) {
  print_choice(item, static_cast<text::Id>(text::weekday_first + item - 1));
}

int choose_weekday(const Subject& subject, int item) {
  entry_of(subject).day = static_cast<std::uint8_t>(item - 1);
  return 0;
}

const Screen weekday_chooser{.start_row = 2,
                             .title = text::choose_day,
                             .listed = 7,
                             .list_line = print_weekday_choice,
                             .list_enter = choose_weekday};

// --- The time: first how often, then when --------------------------------------------------------

void ask_weekday(const Subject& subject) { run_screen(weekday_chooser, subject); }

/// Asks on the screen of the time, below it.
void ask_day_of_month(const Subject& subject) {
  ScheduleEntry& entry = entry_of(subject);
  print("\n\r%s [1-31] : ", LangText[text::choose_day]);
  print_escapeseq(show_cursor);
  {
    const LineMode lines;
    entry.day =
        static_cast<std::uint8_t>(get_int1(1, 31, entry.day, 0, LangText[text::out_of_range]));
  }
  end_entry();
}

/// What the operator is asked for a `Repetition`, which is the place in the table, from 1 on.
struct Question {
  text::Id name;
  text::Id hint;
  std::int32_t (*parse)(std::string_view typed);
  void (*ask_day)(const Subject& subject);
};

constexpr Question questions[] = {
    {text::once, text::once_hint, check_datetime, nullptr},
    {text::daily, text::time_hint, check_time, nullptr},
    {text::weekly, text::time_hint, check_time, ask_weekday},
    {text::monthly, text::time_hint, check_time, ask_day_of_month},
};

/// Asks until the time is valid, and returns it; 0 when nothing is typed.
std::int32_t ask_time(const Question& question) {
  for (;;) {
    constexpr int longest_time = 120;
    char typed[longest_time + 2] = "";
    print_frame(2, format("%s [%s]", LangText[text::enter_time], LangText[question.hint]));
    print_escapeseq(show_cursor);
    ask_line(typed, sizeof typed, LangText[text::new_value]);
    if (typed[0] == '\0') return 0;
    const std::int32_t time = question.parse(typed);
    if (time != 0) return time;
    show_refusal(text::time_refused);
  }
}

void print_repetition(const Subject&, int item) { print_choice(item, questions[item - 1].name); }

int choose_repetition(const Subject& subject, int item) {
  const Question& question = questions[item - 1];
  const std::int32_t time = ask_time(question);
  if (time == 0) return 0;
  ScheduleEntry& entry = entry_of(subject);
  entry.time = time;
  entry.type = static_cast<std::uint8_t>(item);
  if (question.ask_day != nullptr) question.ask_day(subject);
  return 0;
}

const Screen repetition_chooser{.start_row = 2,
                                .title = text::schedule_time,
                                .listed = std::size(questions),
                                .list_line = print_repetition,
                                .list_enter = choose_repetition};

// --- The screen ----------------------------------------------------------------------------------

const Row schedule_rows[] = {
    {.act = Act::open, .lead = "      1 - ", .label = text::delete_entry, .enter = delete_schedule},
    {.act = Act::custom,
     .lead = "      2 - ",
     .label = text::ups_name,
     .value = [](const Subject& subject) { return schedule_ups(entry_of(subject)); },
     .open = [](const Subject& subject) { run_screen(ups_chooser, subject); }},
    {.act = Act::custom,
     .lead = "      3 - ",
     .label = text::schedule_action,
     .value = [](const Subject& subject) { return schedule_action(entry_of(subject)); },
     .open = [](const Subject& subject) { run_screen(action_chooser, subject); }},
    {.act = Act::custom,
     .lead = "      4 - ",
     .label = text::schedule_time,
     .value = [](const Subject& subject) { return schedule_time(entry_of(subject)); },
     .open = [](const Subject& subject) { run_screen(repetition_chooser, subject); }},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen schedule_screen{.start_row = 2, .title = text::schedule_title, .rows = schedule_rows};

}  // namespace

void print_sch_param(int selected, int index) {
  print_screen(schedule_screen, {.index = index}, selected);
}

void sch_param(int index) { run_screen(schedule_screen, {.index = index}); }
