#pragma once

/// The screens that ask for the name of a profile file. They load the events of a group, number 0
/// to 9, from that file, or save them to it. Enter alone does nothing. A file that cannot be opened
/// is refused, and the group keeps its events. Both functions return 0 or errno.
int load_profile(int group);
int save_profile(int group);
