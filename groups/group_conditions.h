#pragma once

#include <string>

/// The six conditions of a group event. The type says what has to happen: 1 to 24, or 0 for none.
/// The source says to which UPSs of the group. Groups are numbered 0 to 9, events 0 to 63,
/// conditions 0 to 5 (1 to 6 on the screen). Edits `INI1`.

/// The list of the conditions.
void group_job_param_new(int group, int event);
void print_group_param_new(int selected, int group, int event);

/// Sets `text` to the line of a condition in that list. A type without a text has only its source.
void fill_gr_event_name(int group, int event, int condition, std::string& text);

/// The editor of a condition. Deleting moves up the conditions after it.
void group_job_param2(int group, int event, int condition);
void print_group_job_param2(int selected, int group, int event, int condition);

/// Draws the page of the choice of a type that shows types `first` to `last`: 1 to 11 or 12 to 24.
void print_group_job_event(int selected, int first, int last);
