#pragma once

#include "config/fields.h"
#include "menus/screen_kit.h"

/// The actions of a job, and the editor of one of them. The jobs of the events of a UPS and those
/// of the events of a group share it.

/// Where the values of an action lie in a `Job`. Fields that it does not have are empty.
struct JobAction {
  text::Id label = text::action_first;
  const char* letter = "";  // its column in the list of jobs
  Field flag = {};
  Field delay = {};
  Field interval = {};
  Field file = {};
};

constexpr int action_count = 8;

/// The actions that are edited, in the order of their texts. Fax and voice have no editor.
extern const JobAction job_actions[action_count];

/// The row of action `action` on the screen of a job, with its switch. Enter does `enter`, which
/// opens the editor: the action is switched there.
Row action_row(const char* lead, int action, int (*enter)(const Subject&, int item),
               bool (*live)(const Subject&) = nullptr);

/// How many items an action has for its editor: 1 the switch, 2 also a delay, 3 an interval, 4 a
/// program file. 0 for a number that is no action.
int action_items(int action);

/// What is edited, until the editor is left.
struct ActionValues {
  std::uint16_t flag = 0;
  std::uint16_t delay = 0;
  std::uint16_t interval = 0;
};

/// How the editor is opened.
struct ActionEditor {
  Subject subject = {};
  text::Id heading = text::event_first;  // above the name of the action
  Job* job = nullptr;
  int action = 0;
  int items = 0;                // those of `action_items` that are shown
  bool shows_interval = false;  // otherwise the interval has no line, and lines below move up

  /// What Enter does on line 3 behind its own action, if that is an item: returns the line of the
  /// arrow then, 0 to leave.
  int (*behind_line_3)(const Subject&, int line) = nullptr;
};

/// Draws the editor with the arrow on line `selected`.
void print_action_editor(const ActionEditor& editor, const ActionValues& values_shown,
                         int selected);

/// Edits an action of `editor.job`. The values are stored when the editor is left, and always then;
/// the program file is edited in place.
void run_action_editor(const ActionEditor& editor);

/// Asks for the program file of an action of a job.
void edit_program_file(int action, Job& job);
