#pragma once

#include <cstdint>
#include <ctime>

#include "config/record.h"

/// The text form of the schedule entries, and the rule that decides when an entry fires.

/// How often an entry fires: its `type`.
enum Repetition : std::uint8_t { once = 1, daily, weekly, monthly };

/// The entry that matched last; `TestSchedules` and `next_actions` write it.
extern ScheduleEntry ShedAction;

/// Scratch entry of the two conversions.
extern ScheduleEntry ShedAction1;

/// Makes `code` of the other fields in every entry of `INI` that has an action: nine bytes, each as
/// two upper-case hexadecimal digits, the most significant byte of a number first: `time` (4
/// bytes), `ups` (2), `action`, `type`, `day`. An entry without an action is cleared.
void EncodeSchedules();

/// The way back: fills `time`, `ups`, `action`, `type` and `day` of every entry of `INI` whose
/// `code` is not empty. Nothing is checked, so the fields may hold any value.
void DecodeSchedules();

/// The byte that the two hexadecimal digits at `text` spell, in capital or small letters. Other
/// characters give some byte.
std::uint8_t get_hex(const char* text);

/// Returns 1 when entry `index` (0 to 15) of `record` fires in the minute that holds `now` (seconds
/// since 1970, not negative), and copies it to `ShedAction`; otherwise 0.
int TestSchedules(std::int64_t now, const Record& record, int index);

/// The start of the minute that holds `now`.
std::int64_t minute_of(std::int64_t now);

/// The rule behind `TestSchedules`: whether `entry`, with an action and with `time` at the local
/// time `at`, fires in the minute that starts at `minute`, which is `now` in local time. It does
/// not when it already has in this minute (`last`).
bool schedule_fires(const ScheduleEntry& entry, const std::tm& at, const std::tm& now,
                    std::int64_t minute);
