#pragma once

#include <cstddef>
#include <cstdint>

/// Asks for a password on a screen of its own. `password` becomes the check value of what is typed,
/// 0 for an empty entry, which is no password; the text itself is not kept. At most `size - 2`
/// bytes are taken; `size` is at most 256. Returns the item of the arrow then: an empty entry
/// removes the password, and the arrow steps back from `item`, which is dimmed now. After a
/// password whose check value is 0 it stays there, until an arrow key is pressed.
int enter_password(std::uint16_t& password, std::size_t size, int item);
