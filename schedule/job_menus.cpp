#include "schedule/job_menus.h"

#include <string>

#include "lang/lang_text.h"
#include "menus/screen_kit.h"
#include "schedule/action_editor.h"
#include "schedule/jobs.h"
#include "tui/editors.h"
#include "tui/terminal.h"

namespace {

// The list has two screens.
constexpr int second_list = 10;
constexpr int last_event = ups_event_count - 1;

text::Id event_name(const Subject& s) { return static_cast<text::Id>(text::event_first + s.index); }

void* job_of(const Subject& s) { return &INI1.job[s.index]; }

// --- Questions: two answers without a back item -------------------------------------------------

const Row all_defaults_rows[] = {
    {.act = Act::open,
     .lead = "      1 - ",
     .label = text::yes,
     .enter =
         [](const Subject&, int) {
           values_to_default(0, last_event);
           return 0;
         }},
    {.act = Act::back, .lead = "      2 - ", .label = text::no},
};
const Screen all_defaults_question{
    .start_row = 2, .title = text::all_defaults, .rows = all_defaults_rows};

// The answer yes leaves the question open, so the arrow has to be moved to no to get back.
const Row job_defaults_rows[] = {
    {.act = Act::open,
     .lead = "      1 - ",
     .label = text::yes,
     .open = [](const Subject& s) { values_to_default(s.index, s.index); }},
    {.act = Act::back, .lead = "      2 - ", .label = text::no},
};
const Screen job_defaults_question{
    .start_row = 2, .title = text::job_defaults_question, .rows = job_defaults_rows};

/// Without "exec" a shell would wait for the editor, and an interrupt that the editor takes for
/// itself would end that shell: the menu would come back while the editor still reads the keys.
/// When there is no such editor, the menu comes back at once.
int edit_script(const Subject&, int) {
  run_command("exec vi ups_shut.scr");
  return 0;
}

const Row script_rows[] = {
    {.act = Act::open, .lead = "      1 - ", .label = text::yes, .enter = edit_script},
    {.act = Act::back, .lead = "      2 - ", .label = text::no},
    {.act = Act::open,
     .label = text::edit_script_question,
     .live = [](const Subject&) { return false; },
     .shown = [](const Subject&) { return true; }},
};
const Screen script_question{.start_row = 2, .title = text::shutdown_script, .rows = script_rows};

// --- The menu of the jobs -----------------------------------------------------------------------

const Row jobs_rows[] = {
    {.act = Act::flag,
     .lead = "      1 - ",
     .label = text::disable_jobs,
     .field = RECORD_FIELD(system, DisableJobs)},
    {},
    {.act = Act::open,
     .lead = "      2 - ",
     .label = text::job_list,
     .open = [](const Subject&) { jobs_param2(0, second_list - 1); }},
    {.act = Act::open,
     .lead = "      3 - ",
     .label = text::job_list_more,
     .open = [](const Subject&) { jobs_param2(second_list, last_event); }},
    {},
    {.act = Act::open,
     .lead = "      4 - ",
     .label = text::all_defaults,
     .open = [](const Subject&) { run_screen(all_defaults_question); }},
    {},
    {.act = Act::open,
     .lead = "      5 - ",
     .label = text::shutdown_script,
     .open = [](const Subject&) { jobs_param1(); }},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};
const Screen jobs_screen{.start_row = 2, .title = text::jobs_title, .rows = jobs_rows};

// --- The list of the jobs -----------------------------------------------------------------------

/// The name of the event, and a letter for each action: red for those that are off.
void print_job_line(const Subject& first, int item) {
  constexpr int name_columns = 40;
  constexpr int other_columns = number_columns + 5 + 2 + action_count;  // a gap, the brackets
  const int event = first.index + item - 1;
  std::string name = LangText[text::event_first + event];
  print_list_number(item);
  print_cut(dopln(name, name_columns, " "), other_columns);
  put("     [");
  for (const JobAction& action : job_actions) {
    print_escapeseq(number_at(action.flag, &INI1.job[event]) != 0 ? on : off_mark);
    put(action.letter);
  }
  print_escapeseq(normal);
  put("]");
}

int open_job(const Subject& first, int item) {
  job_param(first.index + item - 1);
  return item;
}

const Row job_list_rows[] = {
    {},
    {.act = Act::back, .lead = "       0 - ", .label = text::back},
};

Screen job_list_screen(int first, int last) {
  return {.start_row = 2,
          .title = text::job_list,
          .rows = job_list_rows,
          .listed = last - first + 1,
          .list_line = print_job_line,
          .list_enter = open_job};
}

// --- One job ------------------------------------------------------------------------------------

/// The events that announce a shutdown cannot cause one.
bool can_shut_down(const Subject& s) { return s.index != 2 && s.index != 4; }

/// Enter opens the editor of the action, where it is switched on or off.
int edit_action(const Subject& s, int item) {
  job_param1(s.index, item - 1);
  return item;
}

/// For an event that cannot shut down, the arrow going up from item 6 passes over item 4 as well as
/// over the dimmed item 5; operators count key presses.
int skip_four_going_up(const Subject& s, int from, int to) {
  return from == 6 && to < from && !can_shut_down(s) ? 3 : to;
}

const Row job_rows[] = {
    action_row("       1 - ", 0, edit_action),
    action_row("       2 - ", 1, edit_action),
    action_row("       3 - ", 2, edit_action),
    action_row("       4 - ", 3, edit_action),
    action_row("       5 - ", 4, edit_action, can_shut_down),
    action_row("       6 - ", 5, edit_action),
    action_row("       7 - ", 6, edit_action),
    action_row("       8 - ", 7, edit_action),
    {.act = Act::text, .lead = "       9 - ", .label = text::message, .field = FIELD(Job, Message)},
    {},
    {.act = Act::open,
     .lead = "      10 - ",
     .label = text::job_defaults,
     .open = [](const Subject& s) { run_screen(job_defaults_question, s); }},
    {},
    {.act = Act::back, .lead = "       0 - ", .label = text::back},
};
const Screen job_screen{.start_row = 2,
                        .rows = job_rows,
                        .entry = job_of,
                        .title_of = event_name,
                        .step = skip_four_going_up};

// --- One action of a job ------------------------------------------------------------------------

/// What an odd event tells happens once: nothing is repeated, so there is no interval.
ActionEditor editor_of(int event, int action) {
  return {.subject = {.index = event, .part = action},
          .heading = event_name({.index = event}),
          .job = &INI1.job[event],
          .action = action,
          .items = action_items(action),
          .shows_interval = event % 2 == 0};
}

}  // namespace

void print_jobs_param(int selected) { print_screen(jobs_screen, {}, selected); }

void jobs_param() { run_screen(jobs_screen); }

void jobs_param1() { run_screen(script_question); }

void print_job_param2(int selected, int first, int last) {
  print_screen(job_list_screen(first, last), {.index = first}, selected);
}

void jobs_param2(int first, int last) {
  run_screen(job_list_screen(first, last), {.index = first});
}

void print_job_param(int selected, int event) {
  print_screen(job_screen, {.index = event}, selected);
}

void job_param(int event) { run_screen(job_screen, {.index = event}); }

void print_job_param1(int selected, int event, int action, std::uint16_t flag, std::uint16_t delay,
                      std::uint16_t interval) {
  print_action_editor(editor_of(event, action), {flag, delay, interval}, selected);
}

void job_param1(int event, int action) { run_action_editor(editor_of(event, action)); }
