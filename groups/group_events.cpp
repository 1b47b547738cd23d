#include "groups/group_events.h"

#include <string>

#include "groups/group_conditions.h"
#include "groups/group_jobs.h"
#include "kit/screens.h"
#include "lang/lang_text.h"
#include "schedule/action_editor.h"
#include "tui/format.h"

namespace {

constexpr int page_size = 8;

GroupEvent& event_of(const Subject& s) { return INI1.group[s.group].events[s.event]; }

bool exists(const Subject& s) { return event_of(s).Type[0] != 0; }

// --- The list, in pages -------------------------------------------------------------------------

Subject event_on(const Subject& page, int item) {
  return {.group = page.group, .event = page.first + item - 1};
}

void print_event_line(const Subject& page, int item) {
  constexpr int line_columns = 50;
  const Subject s = event_on(page, item);
  std::string line = shown_text(text::unused);
  if (exists(s)) {
    line = shown_text(text::group_event);
    line.append(" - ").append(event_of(s).job.Message.view());
    dopln(line, line_columns, " ");
  }
  print_value(line);
}

void open_event(const Subject& page, int item) {
  gr_event_param(page.group, event_on(page, item).event);
}

bool has_next_page(const Subject& page) { return page.first + page_size < event_count; }

/// There is no way back to the page before. Leaving this page leaves the list.
void show_next_page(const Subject& page);

constexpr Row list_rows[] = {
    rule,
    open("65", text::show_more, show_next_page).live_if(has_next_page).leaves(),
    rule,
    back,
};

constexpr Screen list_screen{
    .start_row = 2,
    .title = text::group_events,
    .list = {.count = page_size, .line = print_event_line, .enter = open_event},
    .rows = list_rows};

void show_next_page(const Subject& page) {
  run_screen(list_screen, {.group = page.group, .first = page.first + page_size});
}

// --- One event ----------------------------------------------------------------------------------

constexpr int first_action_item = 3;

void* job_of(const Subject& s) { return &event_of(s).job; }

/// Opens the editor of the action, which switches it on or off.
int edit_action(const Subject& s, int item) {
  group_job_param1(s.group, s.event, item - first_action_item);
  return item;
}

/// The rest of the event stays until somebody opens the place again.
void delete_event(const Subject& s) { event_of(s).Type[0] = 0; }

constexpr Row event_rows[] = {
    open("1", text::conditions, opens<group_job_param_new, &Subject::group, &Subject::event>),
    rule,
    action_row("2", 0, edit_action),
    action_row("3", 1, edit_action),
    action_row("4", 2, edit_action),
    action_row("5", 3, edit_action),
    action_row("6", 4, edit_action),
    action_row("7", 5, edit_action),
    action_row("8", 6, edit_action),
    action_row("9", 7, edit_action),
    words("10", text::message, FIELD(Job, Message)),
    rule,
    open("11", text::delete_entry, delete_event).leaves(),
    rule,
    back,
};

constexpr Screen event_screen{
    .start_row = 0, .title = text::group_event_title, .rows = event_rows, .entry = job_of};

}  // namespace

void print_gr_event(int selected, int group, int first, int last) {
  Screen page = list_screen;
  page.list.count = last - first + 1;
  print_screen(page, {.group = group, .first = first - 1}, selected);
}

void gr_event(int group) { run_screen(list_screen, {.group = group}); }

void print_gr_event_param(int selected, int group, int event) {
  print_screen(event_screen, {.group = group, .event = event}, selected);
}

void gr_event_param(int group, int event) {
  const Subject subject{.group = group, .event = event};
  if (!exists(subject)) {
    GroupEvent& fresh = event_of(subject);
    fresh = {};
    fresh.job.Log = 1;
    fresh.job.Message.assign(format("Event %02d", event));
  }
  run_screen(event_screen, subject);
}
