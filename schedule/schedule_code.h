#pragma once

#include <cstdint>

#include "config/record.h"

/// The text form of the schedule entries, as kestrel.ini holds it.

/// Scratch entry of the two conversions.
extern ScheduleEntry ShedAction1;

/// Makes `code` of the other fields in every entry of `INI` that has an action: nine bytes, each as
/// two upper-case hexadecimal digits, the most significant byte of a number first: `time` (4
/// bytes), `ups` (2), `action`, `type`, `day`. Clears an entry without an action.
void EncodeSchedules();

/// The way back: fills `time`, `ups`, `action`, `type` and `day` of every entry of `INI` whose
/// `code` is not empty. Nothing is checked, so the fields may hold any value.
void DecodeSchedules();

/// The byte that the two hexadecimal digits at `text` spell, in capital or small letters. Other
/// characters result in some byte.
std::uint8_t get_hex(const char* text);
