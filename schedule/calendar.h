#pragma once

#include <cstdint>
#include <ctime>
#include <string_view>

/// Calendar arithmetic for the times that an operator types: local wall-clock time to a signed
/// 32-bit count of seconds since 1970-01-01 00:00 UTC, without `mktime`. Leap years are those
/// divisible by 4, which is exact from 1970 to 2038. The functions read the clock and the time zone
/// and change nothing.

/// Month lengths of a common year, January first.
inline constexpr std::int8_t Days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

/// Days of a common year before the first of each month.
inline constexpr std::int32_t YDays[12] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};

/// The local time at `seconds` since 1970, all zero where that cannot be counted. A change of `TZ`
/// or of the zone file counts at once.
std::tm local_time(std::int64_t seconds);

/// The seconds from 1970-01-01 00:00 to the given date and time, both on the same clock, so without
/// a time zone; one hour less while daylight saving time is in force at this very moment, whatever
/// the date. `year` counts from 1900, `month` and `day` from 0. Values past their range carry
/// upwards (second 60 is the next minute, day 30 of April is the first of May); negative ones count
/// backwards. Returns -1 when `year` lies outside 70 to 138, when `month` is negative and no
/// multiple of 12, and when the result is not in 1 to 2147483647.
std::int32_t totalsec(int year, int month, int day, int hour, int minute, int second);

/// The seconds count of a local time, or 0 when its hour is above 23, its minute above 59, its day
/// above 31 or its month not in 0 to 11; also when the hour does not exist, because it is negative
/// or a clock change skips it, and when the result does not fit 32 bits. The other fields need not
/// be in range: 31 April is 1 May. Reads neither `tm_isdst`, `tm_wday` nor `tm_yday`.
///
/// The zone is found by whole hours. So a result has the minutes of UTC, which is half an hour off
/// where the zone is, and eleven hours from UTC or more it is a day off for a part of the day. A
/// year outside 70 to 138 is not refused: it gives a moment within two days of 1970.
std::int32_t my_mktime(const std::tm* local);

/// The seconds count of "day.month.year hour:minute", or 0 when a separator is missing, `my_mktime`
/// refuses the time, or it has passed. The year is written in full or counts from 1900. Pieces are
/// read as `atoi` does: blanks before and anything after a number are ignored, no number is 0.
/// Characters after the 50th are not read.
std::int32_t check_datetime(std::string_view text);

/// The seconds count of "hour:minute" today, passed or not, or 0 when the colon is missing or
/// `my_mktime` refuses the time. Reads numbers as `check_datetime` does.
std::int32_t check_time(std::string_view text);
