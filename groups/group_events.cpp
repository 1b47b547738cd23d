#include "groups/group_events.h"

#include <string>

#include "groups/group_conditions.h"
#include "groups/group_jobs.h"
#include "lang/lang_text.h"
#include "menus/screen_kit.h"
#include "schedule/action_editor.h"

namespace {

constexpr int page_size = 8;

GroupEvent& event_of(const Subject& s) { return INI1.group[s.index].events[s.event]; }

bool exists(const Subject& s) { return event_of(s).Type[0] != 0; }

// --- The list; `Subject::event` is the first event of the page ----------------------------------

Subject event_on(const Subject& page, int item) {
  return {.index = page.index, .event = page.event + item - 1};
}

void print_event_line(const Subject& page, int item) {
  constexpr int line_columns = 50;
  const Subject s = event_on(page, item);
  print_list_number(s.event + 1);
  std::string line = LangText[text::unused];
  if (exists(s)) {
    line = LangText[text::group_event];
    line.append(" - ").append(event_of(s).job.Message.view());
    dopln(line, line_columns, " ");
  }
  print_value(line, number_columns);
}

int open_event(const Subject& page, int item) {
  const Subject s = event_on(page, item);
  gr_event_param(s.index, s.event);
  return item;
}

bool has_next_page(const Subject& page) { return page.event + page_size < event_count; }

/// There is no way back to the page before: leaving this page leaves the list.
int show_next_page(const Subject& page, int item);

const Row list_rows[] = {
    {},
    {.act = Act::open,
     .lead = "      65 - ",
     .label = text::show_more,
     .live = has_next_page,
     .enter = show_next_page},
    {},
    {.act = Act::back, .lead = "       0 - ", .label = text::back},
};

const Screen list_screen{.start_row = 2,
                         .title = text::group_events,
                         .rows = list_rows,
                         .listed = page_size,
                         .list_line = print_event_line,
                         .list_enter = open_event};

int show_next_page(const Subject& page, int) {
  run_screen(list_screen, {.index = page.index, .event = page.event + page_size});
  return 0;
}

// --- One event ----------------------------------------------------------------------------------

constexpr int first_action_item = 3;

void* job_of(const Subject& s) { return &event_of(s).job; }

/// Enter opens the editor of the action, where it is switched on or off.
int edit_action(const Subject& s, int item) {
  group_job_param1(s.index, s.event, item - first_action_item);
  return item;
}

/// The rest of the event stays until the place is opened again.
int delete_event(const Subject& s, int) {
  event_of(s).Type[0] = 0;
  return 0;
}

const Row event_rows[] = {
    {.act = Act::open,
     .lead = "       1 - ",
     .label = text::conditions,
     .open = [](const Subject& s) { group_job_param_new(s.index, s.event); }},
    {},
    action_row("       2 - ", 0, edit_action),
    action_row("       3 - ", 1, edit_action),
    action_row("       4 - ", 2, edit_action),
    action_row("       5 - ", 3, edit_action),
    action_row("       6 - ", 4, edit_action),
    action_row("       7 - ", 5, edit_action),
    action_row("       8 - ", 6, edit_action),
    action_row("       9 - ", 7, edit_action),
    {.act = Act::text, .lead = "      10 - ", .label = text::message, .field = FIELD(Job, Message)},
    {},
    {.act = Act::open, .lead = "      11 - ", .label = text::delete_entry, .enter = delete_event},
    {},
    {.act = Act::back, .lead = "       0 - ", .label = text::back},
};

const Screen event_screen{
    .start_row = 0, .title = text::group_event_title, .rows = event_rows, .entry = job_of};

}  // namespace

void print_gr_event(int selected, int group, int first, int last) {
  Screen page = list_screen;
  page.listed = last - first + 1;
  print_screen(page, {.index = group, .event = first - 1}, selected);
}

void gr_event(int group) { run_screen(list_screen, {.index = group}); }

void print_gr_event_param(int selected, int group, int event) {
  print_screen(event_screen, {.index = group, .event = event}, selected);
}

void gr_event_param(int group, int event) {
  const Subject subject{.index = group, .event = event};
  if (!exists(subject)) {
    GroupEvent& fresh = event_of(subject);
    fresh = {};
    fresh.job.Log = 1;
    fresh.job.Message.assign(format("Event %02d", event));
  }
  run_screen(event_screen, subject);
}
