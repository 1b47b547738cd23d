#pragma once

/// The screens that ask for the name of a profile file and load the events of a group, number 0 to
/// 9, from it or save them to it. Enter alone does nothing. A file that cannot be opened is
/// refused, and the group keeps its events. Both return 0 or errno.
int load_profile(int group);
int save_profile(int group);
