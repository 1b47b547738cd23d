#pragma once

#include <iterator>

#include "config/fields.h"
#include "kit/rows.h"

/// The actions of a job, and the editor of one action. The jobs of the events of a UPS and those of
/// the events of a group share it.

/// Where the values of an action lie in a `Job`. Fields that it does not have are empty.
struct JobAction {
  text::Id label = text::action_log;
  const char* letter = "";  // its column in the list of jobs
  Field flag = {};
  Field delay = {};
  Field interval = {};
  Field file = {};
};

#define JOB(name) FIELD(Job, name)

/// The actions that are edited, in the order of their texts. Fax and voice have no editor.
inline constexpr JobAction job_actions[] = {
    {text::action_log, "L", JOB(Log), JOB(LogDelay)},
    {text::action_execute, "E", JOB(Execute), JOB(ExecuteDelay), JOB(ExecuteInterval), JOB(File)},
    {text::action_local_message, "O", JOB(LocalMessage), JOB(LocalMessageDelay),
     JOB(LocalMessageInterval)},
    {text::action_network_message, "B", JOB(NetMessage), JOB(NetMessageDelay),
     JOB(NetMessageInterval)},
    {text::action_shutdown, "S", JOB(Shutdown), JOB(ShutdownDelay)},
    {text::action_email, "E", JOB(Email), JOB(EmailDelay)},
    {text::action_sms, "M", JOB(SMS), JOB(SMSDelay)},
    {text::action_call, "C", JOB(Call), JOB(CallDelay)},
};

#undef JOB

constexpr int action_count = std::size(job_actions);

/// The row of action `action` on the screen of a job. It shows the switch, and Enter does `editor`,
/// which opens the editor of the action.
constexpr Row action_row(const char* number, int action, Command editor) {
  return flag(number, job_actions[action].label, job_actions[action].flag).enters(editor);
}

/// How many items an action has for its editor: 1 the switch, 2 also a delay, 3 an interval, 4 a
/// program file. 0 for a number that is no action.
int action_items(int action);

/// The values that the editor holds until it is left.
struct ActionValues {
  std::uint16_t flag = 0;
  std::uint16_t delay = 0;
  std::uint16_t interval = 0;
};

/// An action of a job in its editor.
struct ActionEdit {
  text::Id heading = text::product_title;  // above the name of the action
  Job* job = nullptr;
  int action = 0;               // 0 to 7
  int items = 0;                // those of `action_items` that are shown
  bool shows_interval = false;  // otherwise the interval has no line, and lines below move up

  /// Where the arrow goes after the command of line 3: returns a line, 0 to leave. Null: it stays.
  int (*after_line_3)(const ActionEdit& edit) = nullptr;

  ActionValues values = {};
};

/// Draws the editor with the values of `edit` and with the arrow on line `selected`.
void print_action_editor(ActionEdit edit, int selected);

/// Edits an action of `edit.job`. Leaving the editor always stores the values. The program file is
/// edited in place.
void run_action_editor(ActionEdit edit);

/// Asks for the program file of an action of a job.
void edit_program_file(int action, Job& job);
