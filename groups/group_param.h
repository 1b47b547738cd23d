#pragma once

/// The screen of a group, number 0 to 9: its name, how many of its UPSs may fail, and when the
/// service shuts down. It leads to the members, the events and the profile files. A group without a
/// name is empty. Opening it clears at once what a deleted group left there, members and events
/// too, and fills in the defaults. Edits `INI1`.
void group_param(int group);
void print_group_param(int selected, int group);
