#pragma once

#include <cstddef>
#include <cstdint>

/// Asks for a password on a screen of its own. `password` becomes the check value of what is typed,
/// 0 for an empty entry, which is no password; the text itself is not kept. At most `size - 2`
/// bytes are taken; `size` is at most 256. Returns whether anything was typed.
bool enter_password(std::uint16_t& password, std::size_t size);
