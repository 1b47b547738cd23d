#include "schedule/upcoming.h"

#include <bitset>
#include <limits>
#include <optional>

#include "schedule/firing.h"

namespace {

constexpr std::int64_t period = 100 * 86400;
constexpr unsigned day_minutes = 1440;

/// Minutes whose local time is computed from the first one when both ends agree.
constexpr unsigned stretch = 15;

/// The minute that brings the count above this shows nothing more. Each later minute shows one
/// match.
constexpr int full_list = 9;

std::optional<std::tm> local_time(std::int64_t seconds) {
  const auto t = static_cast<std::time_t>(seconds);
  std::tm local{};
  if (localtime_r(&t, &local) == nullptr) return std::nullopt;
  return local;
}

/// The minute of the day, 0 to 1439.
unsigned minute_of_day(const std::tm& local) {
  return static_cast<unsigned>(local.tm_hour) * 60 + static_cast<unsigned>(local.tm_min);
}

/// The schedule, with the local time of each entry converted once for the whole period.
class Schedule {
 public:
  explicit Schedule(const Record& record) : entries_(record.schedule) {
    for (int i = 0; i < schedule_count; ++i) {
      if (entries_[i].action == 0) continue;
      at_[i] = local_time(entries_[i].time);
      if (at_[i]) wanted_.set(minute_of_day(*at_[i]));
    }
  }

  /// Whether any entry has this minute of the day.
  bool wants(unsigned minute) const { return wanted_[minute]; }

  /// Shows what fires in the minute that begins at `minute`, and adds to `count`.
  void show_minute(std::int64_t minute, const ShowAction& show, int& count) const {
    const std::optional<std::tm> now = local_time(minute);
    if (!now) return;
    for (int i = 0; i < schedule_count; ++i) {
      if (!at_[i] || !schedule_fires(entries_[i], *at_[i], *now, minute)) continue;
      ShedAction = entries_[i];
      show(*now, ShedAction);
      if (++count > full_list) return;
    }
  }

 private:
  const ScheduleEntry* entries_;
  std::optional<std::tm> at_[schedule_count];  // nothing for an entry without an action
  std::bitset<day_minutes> wanted_;
};

}  // namespace

std::int64_t upcoming_end(std::int64_t now) {
  return now > std::numeric_limits<std::int64_t>::max() - period ? now : now + period;
}

int next_actions(std::int64_t& start, std::int64_t end, const Record& record,
                 const ShowAction& show) {
  tzset();  // once, because `localtime_r` need not look at the zone file
  const Schedule schedule(record);
  int count = 0;
  std::optional<std::tm> first = local_time(minute_of(start));
  while (start < end) {
    const std::optional<std::tm> next = local_time(minute_of(start) + stretch * 60);
    const unsigned wall = first ? minute_of_day(*first) : 0;
    const bool steady = first && next && minute_of_day(*next) == (wall + stretch) % day_minutes;
    for (unsigned i = 0; i < stretch && start < end; ++i, start += 60) {
      if (!steady || schedule.wants((wall + i) % day_minutes)) {
        schedule.show_minute(minute_of(start), show, count);
      }
    }
    first = next;
  }
  return count;
}
