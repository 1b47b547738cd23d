#pragma once

#include <cstdint>
#include <ctime>
#include <string_view>

/// Calendar arithmetic for the times that an operator types. It turns local wall-clock time into a
/// signed 32-bit count of seconds since 1970-01-01 00:00 UTC, without `mktime`. Years divisible by
/// 4 are leap years, which is exact from 1970 to 2038. The functions read the clock and the time
/// zone and change nothing.

/// Month lengths of a common year, January first.
inline constexpr std::int8_t Days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

/// Days of a common year before the first of each month.
inline constexpr std::int32_t YDays[12] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

/// The local time at `seconds` since 1970, or all zero if it cannot be computed. A change of `TZ`
/// or of the zone file counts at once.
std::tm local_time(std::int64_t seconds);

/// The seconds from 1970-01-01 00:00 to the given date and time, without a time zone. The result is
/// one hour less while daylight saving time is in force now, whatever the date. `year` counts from
/// 1900, `month` and `day` from 0. Values past their range carry upwards: second 60 is the next
/// minute, day 30 of April is the first of May. Negative values count backwards. Returns -1 when
/// `year` lies outside 70 to 138, when `month` is negative and no multiple of 12, and when the
/// result is not in 1 to 2147483647.
std::int32_t totalsec(int year, int month, int day, int hour, int minute, int second);

/// The seconds count of a local time. Returns 0 when the hour is above 23, the minute above 59, the
/// day above 31 or the month not in 0 to 11. Returns 0 also when the hour does not exist, because
/// it is negative or a clock change skips it, and when the result does not fit 32 bits. The other
/// fields need not be in range: 31 April is 1 May. Does not read `tm_isdst`, `tm_wday` and
/// `tm_yday`.
///
/// The offset of the zone is searched in whole hours. So the minutes of the result are those of
/// UTC, half an hour off in a zone with a half hour. In zones eleven hours or more from UTC the
/// result is a day off for a part of the day. A year outside 70 to 138 is not refused: the result
/// lies within two days of 1970.
std::int32_t my_mktime(const std::tm* local);

/// The seconds count of "day.month.year hour:minute". Returns 0 when a separator is missing, when
/// `my_mktime` refuses the time, and when the time has passed. The year is written in full or
/// counts from 1900. Numbers are read as `atoi` does: blanks before a number and anything after it
/// are ignored, and no number is 0. Characters after the 50th are not read.
std::int32_t check_datetime(std::string_view text);

/// The seconds count of "hour:minute" today, even if it has passed. Returns 0 when the colon is
/// missing or `my_mktime` refuses the time. Reads numbers as `check_datetime` does.
std::int32_t check_time(std::string_view text);
