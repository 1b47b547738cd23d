#include "schedule/firing.h"

ScheduleEntry ShedAction;

int TestSchedules(std::int64_t now, const Record& record, int index) {
  const std::int64_t minute = minute_of(now);
  const auto minute_time = static_cast<std::time_t>(minute);
  const std::tm* local = std::localtime(&minute_time);
  const ScheduleEntry& entry = record.schedule[index];
  if (local == nullptr || entry.action == 0) return 0;

  const std::tm now_local = *local;  // the next call of localtime uses the same memory
  const auto entry_time = static_cast<std::time_t>(entry.time);
  const std::tm* at = std::localtime(&entry_time);
  if (at == nullptr || !schedule_fires(entry, *at, now_local, minute)) return 0;
  ShedAction = entry;
  return 1;
}

std::int64_t minute_of(std::int64_t now) {
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(now) / 60 * 60);
}

bool schedule_fires(const ScheduleEntry& entry, const std::tm& at, const std::tm& now,
                    std::int64_t minute) {
  if (now.tm_hour != at.tm_hour || now.tm_min != at.tm_min) return false;
  if (entry.last / 60 == minute / 60) return false;
  switch (Repetition{entry.type}) {
    case Repetition::once:
      return now.tm_mday == at.tm_mday && now.tm_mon == at.tm_mon && now.tm_year == at.tm_year;
    case Repetition::daily:
      return true;
    case Repetition::weekly:
      return now.tm_wday == entry.day;
    case Repetition::monthly:
      return now.tm_mday == entry.day;
    default:
      return false;
  }
}
