#include "schedule/job_menus.h"

#include <sys/wait.h>

#include <string>

#include "config/events.h"
#include "kit/screens.h"
#include "lang/lang_text.h"
#include "schedule/action_editor.h"
#include "schedule/jobs.h"
#include "tui/editors.h"
#include "tui/terminal.h"

namespace {

// The list has two screens.
constexpr int second_list = 10;
constexpr int last_event = ups_event_count - 1;

text::Id event_name(const Subject& s) { return static_cast<text::Id>(events[s.event].name); }

void* job_of(const Subject& s) { return &INI1.job[s.event]; }

// --- Questions: two answers without a back item -------------------------------------------------

constexpr Row no = {.act = Act::back, .number = "2", .label = text::no};

void restore_all(const Subject&) { values_to_default(0, last_event); }

constexpr Row all_defaults_rows[] = {
    open("1", text::yes, restore_all).leaves(),
    no,
};
constexpr Screen all_defaults_question{
    .start_row = 2, .title = text::all_defaults, .rows = all_defaults_rows};

// The answer yes leaves the question open. The operator moves the arrow to no to get back.
constexpr Row job_defaults_rows[] = {
    open("1", text::yes, opens<values_to_default, &Subject::event, &Subject::event>),
    no,
};
constexpr Screen job_defaults_question{
    .start_row = 2, .title = text::job_defaults_question, .rows = job_defaults_rows};

/// "exec" replaces the shell by the editor. Otherwise an interrupt would end the shell but not an
/// editor that catches it, and the menu would come back while the editor still reads the keys.
/// Without an editor the shell's words stay readable for a while.
void edit_script(const Subject&) {
  constexpr int not_executable = 126;
  constexpr int not_found = 127;
  const int status = run_command("exec vi ups_shut.scr");
  if (!WIFEXITED(status)) return;
  if (WEXITSTATUS(status) == not_executable || WEXITSTATUS(status) == not_found) {
    ussleep(message_pause);
  }
}

constexpr Row script_rows[] = {
    open("1", text::yes, edit_script).leaves(),
    no,
    remark(text::edit_script_question),
};
constexpr Screen script_question{
    .start_row = 2, .title = text::shutdown_script, .rows = script_rows};

// --- The menu of the jobs -----------------------------------------------------------------------

void list_first_jobs(const Subject&) { jobs_param2(0, second_list - 1); }
void list_other_jobs(const Subject&) { jobs_param2(second_list, last_event); }

constexpr Row jobs_rows[] = {
    flag("1", text::disable_jobs, FIELD(Record, system.DisableJobs)),
    rule,
    open("2", text::job_list, list_first_jobs),
    open("3", text::job_list_more, list_other_jobs),
    rule,
    open("4", text::all_defaults, &all_defaults_question),
    rule,
    open("5", text::shutdown_script, &script_question),
    rule,
    back,
};
constexpr Screen jobs_screen{.start_row = 2, .title = text::jobs_title, .rows = jobs_rows};

// --- The list of the jobs -----------------------------------------------------------------------

/// The name of the event, and a letter for each action, red for an action that is off.
void print_job_line(const Subject& s, int item) {
  constexpr int name_columns = 40;
  constexpr int other_columns = 5 + 2 + action_count;  // a gap, the brackets, the letters
  const int event = s.first + item - 1;
  std::string name = shown_text(events[event].name);
  print_before(other_columns, dopln(name, name_columns, " "));
  put("     [");
  for (const JobAction& action : job_actions) {
    print_escapeseq(number_at(action.flag, &INI1.job[event]) != 0 ? escape::on : escape::off_mark);
    put(action.letter);
  }
  print_escapeseq(escape::normal);
  put("]");
}

void open_job(const Subject& s, int item) { job_param(s.first + item - 1); }

Screen job_list_screen(int first, int last) {
  return {.start_row = 2,
          .title = text::job_list,
          .list = {.count = last - first + 1,
                   .line = print_job_line,
                   .enter = open_job,
                   .restarts = true},
          .rows = only_back};
}

// --- One job ------------------------------------------------------------------------------------

bool offers_shutdown(const Subject& s) { return events[s.event].offers_shutdown; }

constexpr int first_action_item = 1;

/// Opens the editor of the action, which switches it on or off.
int edit_action(const Subject& s, int item) {
  job_param1(s.event, item - first_action_item);
  return item;
}

/// For an event that offers no shutdown, item 5 is dim. Going up from item 6, the arrow passes over
/// item 4 as well. Operators count key presses.
int skip_four_going_up(const Subject& s, int from, int to) {
  return from == 6 && to < from && !offers_shutdown(s) ? 3 : to;
}

constexpr Row job_rows[] = {
    action_row("1", 0, edit_action),
    action_row("2", 1, edit_action),
    action_row("3", 2, edit_action),
    action_row("4", 3, edit_action),
    action_row("5", 4, edit_action).live_if(offers_shutdown),
    action_row("6", 5, edit_action),
    action_row("7", 6, edit_action),
    action_row("8", 7, edit_action),
    words("9", text::message, FIELD(Job, Message)),
    rule,
    open("10", text::job_defaults, &job_defaults_question),
    rule,
    back,
};
constexpr Screen job_screen{.start_row = 2,
                            .rows = job_rows,
                            .entry = job_of,
                            .title_of = event_name,
                            .step = skip_four_going_up};

// --- One action of a job ------------------------------------------------------------------------

/// An event that ends something happens once. Nothing is repeated, so there is no interval.
ActionEdit edit_of(int event, int action) {
  return {.heading = event_name({.event = event}),
          .job = &INI1.job[event],
          .action = action,
          .items = action_items(action),
          .shows_interval = events[event].begins};
}

}  // namespace

void print_jobs_param(int selected) { print_screen(jobs_screen, {}, selected); }

void jobs_param() { run_screen(jobs_screen); }

void jobs_param1() { run_screen(script_question); }

void print_job_param2(int selected, int first, int last) {
  print_screen(job_list_screen(first, last), {.first = first}, selected);
}

void jobs_param2(int first, int last) {
  run_screen(job_list_screen(first, last), {.first = first});
}

void print_job_param(int selected, int event) {
  print_screen(job_screen, {.event = event}, selected);
}

void job_param(int event) { run_screen(job_screen, {.event = event}); }

void print_job_param1(int selected, int event, int action, std::uint16_t flag, std::uint16_t delay,
                      std::uint16_t interval) {
  ActionEdit edit = edit_of(event, action);
  edit.values = {flag, delay, interval};
  print_action_editor(edit, selected);
}

void job_param1(int event, int action) { run_action_editor(edit_of(event, action)); }
