#pragma once

#include <cstddef>
#include <cstdint>

/// Asks for a password on a screen of its own. `password` becomes the check value of what is typed.
/// The text itself is not kept. At most `size - 2` bytes are taken; `size` is at most 256. An empty
/// entry removes the password: its check value is 0. The end-of-file character alone (Ctrl-D)
/// leaves the password as it is.
///
/// Returns the arrow's next item. That is `item`, but `item - 1` after an empty entry, because
/// `item` is dim then. After a password whose check value is 0 the arrow stays on the dim item
/// until an arrow key is pressed.
int enter_password(std::uint16_t& password, std::size_t size, int item);
