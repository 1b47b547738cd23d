#include "groups/group_jobs.h"

#include "config/events.h"
#include "schedule/action_editor.h"

namespace {

constexpr int shutdown_action = 4;
constexpr int items_with_file = 4;

Job& job_of(int group, int event) { return INI1.group[group].events[event].job; }

/// Line 3 always goes on into line 4. For a program, line 4 is its file. It is asked for twice
/// where line 3 is the file itself. For a message, line 4 is the way out. Operators count on it:
/// the interval is the last value that they enter.
int go_on_into_line_4(const ActionEdit& edit) {
  constexpr int line_3 = 3;
  constexpr int leave = 0;
  if (action_items(edit.action) < items_with_file) return leave;
  edit_program_file(edit.action, *edit.job);
  return line_3;
}

/// A group has a shutdown delay of its own. The delay of the action stays in the record, without a
/// line.
int items_of(int action) { return action == shutdown_action ? 1 : action_items(action); }

bool has_interval(int event) { return event % 2 == 0; }

/// The first heading is an event name, chosen by the number of the group. Operators know it so.
ActionEdit edit_of(int group, int event, int action, int items, bool shows_interval) {
  return {.heading = static_cast<text::Id>(events[group].name),
          .job = &job_of(group, event),
          .action = action,
          .items = items,
          .shows_interval = shows_interval,
          .after_line_3 = go_on_into_line_4};
}

}  // namespace

void print_group_job_param1(int selected, int group, int event, int action, std::uint16_t flag,
                            std::uint16_t delay, std::uint16_t interval, int items,
                            bool shows_interval) {
  ActionEdit edit = edit_of(group, event, action, items, shows_interval);
  edit.values = {flag, delay, interval};
  print_action_editor(edit, selected);
}

void group_job_param1(int group, int event, int action) {
  run_action_editor(edit_of(group, event, action, items_of(action), has_interval(event)));
}
