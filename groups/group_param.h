#pragma once

/// The screen of one group, number 0 to 9: its name, how many of its UPSs may fail and when the
/// service shuts down, and the way to its members, its events and the profile files. A group
/// without a name is empty: opening one clears at once whatever a deleted group left there, members
/// and events too, and fills in the defaults. Edits `INI1`.
void group_param(int group);
void print_group_param(int selected, int group);
