#pragma once

/// The members of a group, number 0 to 9: up to eight UPSs, each chosen from the list of UPSs. A
/// UPS may be a member twice, and of several groups. Edits `INI1`.
void gr_ups(int group);
void print_gr_ups(int selected, int group);
