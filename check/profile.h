#pragma once

#include <string>

/// Checks a group profile: what Harrier does not load from it, and what a save of its events would
/// drop, move or change. An event is called as in the file of a group, and all findings are on line
/// 1 of `shown`. Returns 0, or the errno of what kept the profile from being read.
int check_profile(const std::string& path, const std::string& shown);
