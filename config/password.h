#pragma once

#include <cstdint>

/// The check value of a password, the only form in which one is kept: the sum of its character
/// codes, each a signed 8-bit number, modulo 65536. Weak, and independent of the order of the
/// characters, but it is what the service compares. The empty text gives 0.
std::uint16_t CalculatePassword(const char* text);
