#pragma once

#include <cstdint>

/// Returns the check value of a password, the only form in which a password is kept: the sum of its
/// character codes, each a signed 8-bit number, modulo 65536. The order of the characters makes no
/// difference. That is weak, but the service compares this value. That of the empty text is 0.
std::uint16_t CalculatePassword(const char* text);
