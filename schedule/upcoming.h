#pragma once

#include <cstdint>
#include <ctime>
#include <functional>

#include "config/record.h"

/// What the schedule entries will do in the next 100 days.

/// The end of the period that begins at `now`, in seconds: 100 days later, or `now` itself if that
/// does not fit.
std::int64_t upcoming_end(std::int64_t now);

/// Receives one match: the minute in local time, and the entry (`ShedAction`, until the next
/// match).
using ShowAction = std::function<void(const std::tm& minute, const ScheduleEntry& entry)>;

/// Tests every entry of `record` in every minute from `start` until `end`, in seconds since 1970.
/// Shows each match, by time and then by the index of the entry. From the tenth match on, a minute
/// shows one match at most. Moves `start` by steps of 60 seconds until it is not before `end`, so a
/// second call shows nothing. Returns the number of matches.
///
/// Finds what `TestSchedules` finds for every minute, but converts to local time only a few times
/// an hour. This relies on one fact: no zone leaves its offset from UTC and returns to it within a
/// quarter of an hour.
int next_actions(std::int64_t& start, std::int64_t end, const Record& record,
                 const ShowAction& show);
