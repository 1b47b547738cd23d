#include "schedule/calendar.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

namespace {

constexpr std::int64_t hour_seconds = 3600;
constexpr std::int64_t day_seconds = 86400;
constexpr std::size_t longest_text = 50;

/// `my_mktime` stops after this many hours. An hour that exists is met long before.
constexpr int most_steps = 100;

/// Takes the whole `size`s out of `low` and adds them to `high`.
void carry(std::int64_t& low, std::int64_t size, std::int64_t& high) {
  high += low / size;
  low %= size;
}

bool fits(std::int64_t seconds) {
  return seconds >= std::numeric_limits<std::int32_t>::min() &&
         seconds <= std::numeric_limits<std::int32_t>::max();
}

/// `totalsec` before it is cut to 32 bits. Computes in 64 bits, so that no sum overflows.
std::int64_t wide_totalsec(std::int64_t year, std::int64_t month, std::int64_t day,
                           std::int64_t hour, std::int64_t minute, std::int64_t second) {
  // The present moment counts, not the date. `my_mktime` corrects the hour anyway.
  const bool summer = local_time(std::time(nullptr)).tm_isdst != 0;
  if (year < 70 || year > 138) return -1;

  carry(second, 60, minute);
  carry(minute, 60, hour);
  carry(hour, 24, day);
  carry(month, 12, year);
  if (month < 0) return -1;
  while (day >= Days[month]) {
    if (year % 4 == 0 && month == 1) {
      if (day < 29) break;
      day -= 29;
    } else {
      day -= Days[month];
    }
    ++month;
    carry(month, 12, year);
  }

  const std::int64_t y = year - 70;
  std::int64_t leap_days = (y + 2) / 4;
  if (year % 4 == 0 && month < 2) --leap_days;
  const std::int64_t days = y * 365 + leap_days + YDays[month] + day;
  std::int64_t seconds = days * day_seconds + hour * hour_seconds + minute * 60 + second;
  if (summer) seconds -= hour_seconds;
  return seconds > 0 ? seconds : -1;
}

/// The present time with its seconds set to 0.
std::tm this_minute() {
  std::tm now = local_time(std::time(nullptr));
  now.tm_sec = 0;
  return now;
}

/// Moves the text before the first `separator` from `rest` to `piece`, and drops the separator.
/// Returns false when there is no separator.
bool cut(std::string& rest, char separator, std::string& piece) {
  const std::size_t at = rest.find(separator);
  if (at == std::string::npos) return false;
  piece = rest.substr(0, at);
  rest.erase(0, at + 1);
  return true;
}

/// `atoi` for any number of digits. A number too long for an `int` stays out of every range.
int number(const std::string& piece) {
  constexpr long far_out = 1'000'000'000;
  return static_cast<int>(std::clamp(std::strtol(piece.c_str(), nullptr, 10), -far_out, far_out));
}

}  // namespace

std::tm local_time(std::int64_t seconds) {
  const auto t = static_cast<std::time_t>(seconds);
  // `localtime_r` need not notice that `TZ` or the zone file has changed.
  const std::tm* local = std::localtime(&t);
  return local == nullptr ? std::tm{} : *local;
}

std::int32_t totalsec(int year, int month, int day, int hour, int minute, int second) {
  const std::int64_t seconds = wide_totalsec(year, month, day, hour, minute, second);
  return fits(seconds) ? static_cast<std::int32_t>(seconds) : -1;
}

std::int32_t my_mktime(const std::tm* local) {
  if (local->tm_hour > 23 || local->tm_min > 59 || local->tm_mday > 31 || local->tm_mon > 11 ||
      local->tm_mon % 12 < 0) {
    return 0;
  }
  const auto wanted = static_cast<std::uint8_t>(local->tm_hour);
  // For a year out of range this is -1, and the search starts from there. It ends near 1970, and
  // `check_datetime` refuses that as past.
  std::int64_t t = wide_totalsec(local->tm_year, local->tm_mon, std::int64_t{local->tm_mday} - 1,
                                 local->tm_hour, local->tm_min, local->tm_sec);
  if (!fits(t)) return 0;

  int counter = 100;
  for (int step = 0;; ++step) {
    const int hour = local_time(t).tm_hour;
    if (hour == wanted) break;
    if (step == most_steps) return 0;
    const int direction = hour <= wanted ? 1 : -1;
    t += direction * hour_seconds;
    counter += direction;
  }
  // More than ten steps means that the search crossed midnight. In zones eleven hours from UTC this
  // is wrong for a part of the day. The service computes the same day as we do.
  if (counter > 110) t -= day_seconds;
  if (counter < 90) t += day_seconds;
  return fits(t) ? static_cast<std::int32_t>(t) : 0;
}

std::int32_t check_datetime(std::string_view text) {
  std::string rest(text.substr(0, longest_text));
  std::string day, month, year, hour;
  if (!cut(rest, '.', day) || !cut(rest, '.', month) || !cut(rest, ' ', year) ||
      !cut(rest, ':', hour)) {
    return 0;
  }
  std::tm local = this_minute();
  local.tm_mday = number(day);
  local.tm_mon = number(month) - 1;
  local.tm_year = number(year);
  if (local.tm_year > 255) local.tm_year -= 1900;
  local.tm_hour = number(hour);
  local.tm_min = number(rest);
  const std::int32_t t = my_mktime(&local);
  return t < 0 || t < std::time(nullptr) ? 0 : t;
}

std::int32_t check_time(std::string_view text) {
  std::string rest(text.substr(0, longest_text));
  std::string hour;
  if (!cut(rest, ':', hour)) return 0;
  std::tm local = this_minute();
  local.tm_hour = number(hour);
  local.tm_min = number(rest);
  return std::max(my_mktime(&local), 0);
}
