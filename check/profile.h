#pragma once

#include <string>

/// Checks a group profile. Findings call it `shown`. Returns 0, or the errno of what kept it from
/// being read.
int check_profile(const std::string& path, const std::string& shown);
