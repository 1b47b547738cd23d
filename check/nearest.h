#pragma once

#include <span>
#include <string_view>

/// Returns the one of `names` that `text` is most likely a slip of, or nothing. A slip is a letter
/// too much, too few or wrong, two letters exchanged, or capitals and small letters mixed up.
std::string_view nearest_name(std::string_view text, std::span<const std::string_view> names);
