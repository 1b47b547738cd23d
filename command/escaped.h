#pragma once

#include <string>
#include <string_view>

/// The text without what a terminal might obey or nobody can see: control characters, characters
/// that look like a blank or like nothing, and bytes that are not UTF-8 become "\x1b" and the
/// like.
std::string escaped(std::string_view text);
