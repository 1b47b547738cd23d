#include "schedule/schedule_editor.h"

#include <iterator>
#include <string_view>

#include "kit/screens.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "schedule/calendar.h"
#include "schedule/schedule_texts.h"
#include "tui/editors.h"
#include "tui/format.h"
#include "tui/terminal.h"
#include "ups/ups_line.h"
#include "ups/ups_slot.h"

namespace {

ScheduleEntry& entry_of(const Subject& s) { return INI1.schedule[s.schedule]; }

/// The rest of the entry stays until saving clears it.
void delete_schedule(const Subject& s) {
  entry_of(s).action = 0;
  entry_of(s).type = 0;
}

// --- Choosers: lists without a way back, which are left by choosing ------------------------------

void print_ups_choice(const Subject&, int item) { print_ups_line(item - 1, LinkValues::edited); }

/// A free slot is no choice: the UPS stays.
void choose_ups(const Subject& s, int item) {
  if (ups_in_use(item - 1)) entry_of(s).ups = static_cast<std::uint16_t>(item - 1);
}

constexpr Screen ups_chooser{
    .start_row = 0,
    .title = text::choose_ups,
    .list = {.count = ups_count, .line = print_ups_choice, .enter = choose_ups, .leaves = true}};

void print_action_choice(const Subject&, int item) {
  print_cut(shown_text(offered_actions[item - 1]));
}

void choose_action(const Subject& s, int item) {
  entry_of(s).action = static_cast<std::uint8_t>(item);
}

constexpr Screen action_chooser{.start_row = 2,
                                .title = text::schedule_action,
                                .list = {.count = std::size(offered_actions),
                                         .line = print_action_choice,
                                         .enter = choose_action,
                                         .leaves = true}};

void print_weekday_choice(const Subject&, int item) {
  print_cut(shown_text(text::weekday_first + item - 1));
}

void choose_weekday(const Subject& s, int item) {
  entry_of(s).day = static_cast<std::uint8_t>(item - 1);
}

constexpr Screen weekday_chooser{
    .start_row = 2,
    .title = text::choose_day,
    .list = {.count = 7, .line = print_weekday_choice, .enter = choose_weekday, .leaves = true}};

// --- The time: first how often, then when --------------------------------------------------------

void ask_weekday(const Subject& s) { run_screen(weekday_chooser, s); }

/// Asks below the screen of the time.
void ask_day_of_month(const Subject& s) {
  ScheduleEntry& entry = entry_of(s);
  print("\n\r%s [1-31] : ", shown_text(text::choose_day).c_str());
  print_escapeseq(escape::show_cursor);
  {
    const LineMode lines;
    entry.day = static_cast<std::uint8_t>(
        get_int1(1, 31, entry.day, 0, shown_text(text::out_of_range).c_str()));
  }
  end_entry();
}

/// What the operator is asked for a `Repetition`. The rows are in the order of its numbers.
struct Question {
  text::Id name;
  text::Id hint;
  std::int32_t (*parse)(std::string_view typed);
  void (*ask_day)(const Subject&);
};

constexpr Question questions[] = {
    {text::once, text::once_hint, check_datetime, nullptr},
    {text::daily, text::time_hint, check_time, nullptr},
    {text::weekly, text::time_hint, check_time, ask_weekday},
    {text::monthly, text::time_hint, check_time, ask_day_of_month},
};

/// Asks until the time is valid, and returns it. Returns 0 when nothing is typed.
std::int32_t ask_time(const Question& question) {
  for (;;) {
    constexpr int longest_time = 120;
    char typed[longest_time + 2] = "";
    print_frame(2, format("%s [%s]", shown_text(text::enter_time).c_str(),
                          shown_text(question.hint).c_str()));
    print_escapeseq(escape::show_cursor);
    ask_line(typed, sizeof typed, shown_text(text::new_value).c_str());
    if (typed[0] == '\0') return 0;
    const std::int32_t time = question.parse(typed);
    if (time != 0) return time;
    show_refusal(text::time_refused);
  }
}

void print_repetition(const Subject&, int item) { print_cut(shown_text(questions[item - 1].name)); }

void choose_repetition(const Subject& s, int item) {
  const Question& question = questions[item - 1];
  const std::int32_t time = ask_time(question);
  if (time == 0) return;
  entry_of(s).time = time;
  entry_of(s).type = static_cast<std::uint8_t>(item);
  if (question.ask_day != nullptr) question.ask_day(s);
}

constexpr Screen repetition_chooser{.start_row = 2,
                                    .title = text::schedule_time,
                                    .list = {.count = std::size(questions),
                                             .line = print_repetition,
                                             .enter = choose_repetition,
                                             .leaves = true}};

// --- The screen ----------------------------------------------------------------------------------

std::string ups(const Subject& s) { return schedule_ups(entry_of(s)); }
std::string action(const Subject& s) { return schedule_action(entry_of(s)); }
std::string time(const Subject& s) { return schedule_time(entry_of(s)); }

constexpr Row schedule_rows[] = {
    open("1", text::delete_entry, delete_schedule).leaves(),
    custom("2", text::ups_name, ups, &ups_chooser),
    custom("3", text::schedule_action, action, &action_chooser),
    custom("4", text::schedule_time, time, &repetition_chooser),
    rule,
    back,
};

constexpr Screen schedule_screen{
    .start_row = 2, .title = text::schedule_title, .rows = schedule_rows};

}  // namespace

void print_sch_param(int selected, int index) {
  print_screen(schedule_screen, {.schedule = index}, selected);
}

void sch_param(int index) { run_screen(schedule_screen, {.schedule = index}); }
