#pragma once

#include <cstdint>
#include <ctime>

#include "config/record.h"

/// The rule that decides when a schedule entry fires.

/// How often an entry fires: its `type`.
enum class Repetition : std::uint8_t { once = 1, daily, weekly, monthly };

/// The entry that matched last. `TestSchedules` and `next_actions` write it.
extern ScheduleEntry ShedAction;

/// Returns 1 when entry `index` (0 to 15) of `record` fires in the minute that holds `now` (seconds
/// since 1970, not negative), and copies it to `ShedAction`; otherwise 0.
int TestSchedules(std::int64_t now, const Record& record, int index);

/// The start of the minute that holds `now`.
std::int64_t minute_of(std::int64_t now);

/// The rule of `TestSchedules` for an entry with an action. `at` is the local time of the entry,
/// `now` the local time of the minute that starts at `minute`. An entry that has already fired in
/// this minute (`last`) does not fire again.
bool schedule_fires(const ScheduleEntry& entry, const std::tm& at, const std::tm& now,
                    std::int64_t minute);
