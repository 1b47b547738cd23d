#include "schedule/schedule_texts.h"

#include <cstdint>
#include <iterator>

#include "lang/lang_text.h"
#include "schedule/calendar.h"
#include "schedule/firing.h"
#include "tui/columns.h"
#include "tui/format.h"
#include "ups/ups_slot.h"

namespace {

constexpr const char* keywords[] = {
    "SYSSHUTDOWN", "UPSSHUTDOWN", "UPSREBOOT", "UPSTEST", "BATTERYTEST", "PANELTEST", "OSSHUTDOWN",
};
constexpr int os_shutdown = std::size(keywords);

bool known_action(const ScheduleEntry& entry) {
  return entry.action >= 1 && entry.action <= os_shutdown;
}

/// A day from a file may be any byte. A text with that number always exists.
std::string weekday(const ScheduleEntry& entry) {
  static_assert(text::weekday_first + UINT8_MAX < text_count);
  return shown_text(text::weekday_first + entry.day);
}

std::string date(const std::tm& at) {
  return format("%02d.%02d.%04d", at.tm_mday, at.tm_mon + 1, at.tm_year + 1900);
}

}  // namespace

std::string schedule_ups(const ScheduleEntry& entry) {
  return ups_in_use(entry.ups) ? printable(INI1.ups[entry.ups].Name.view()) : "?";
}

std::string schedule_keyword(const ScheduleEntry& entry) {
  return known_action(entry) ? keywords[entry.action - 1] : shown_text(text::schedule_not_set);
}

std::string schedule_action(const ScheduleEntry& entry) {
  if (!known_action(entry)) return shown_text(text::schedule_not_set);
  return shown_text(entry.action == os_shutdown ? text::action_shutdown
                                                : offered_actions[entry.action - 1]);
}

std::string schedule_short_time(const ScheduleEntry& entry) {
  const std::tm at = local_time(entry.time);
  const int hour = at.tm_hour;
  const int minute = at.tm_min;
  switch (Repetition{entry.type}) {
    case Repetition::once:
      return format("[%s - %02d:%02d]", date(at).c_str(), hour, minute);
    case Repetition::daily:
      return format("[D - %02d:%02d]", hour, minute);
    case Repetition::weekly:
      return format("[W - %s - %02d:%02d]",
                    std::string(first_characters(weekday(entry), 3)).c_str(), hour, minute);
    case Repetition::monthly:
      return format("[M - %d - %02d:%02d]", entry.day, hour, minute);
    default:
      return shown_text(text::schedule_not_set);
  }
}

std::string schedule_time(const ScheduleEntry& entry) {
  const std::tm at = local_time(entry.time);
  const int hour = at.tm_hour;
  const int minute = at.tm_min;
  switch (Repetition{entry.type}) {
    case Repetition::once:
      return format("%s - %s - %02d:%02d", shown_text(text::once).c_str(), date(at).c_str(), hour,
                    minute);
    case Repetition::daily:
      return format("%s - %02d:%02d", shown_text(text::daily).c_str(), hour, minute);
    case Repetition::weekly:
      return format("%s - %s - %02d:%02d", shown_text(text::weekly).c_str(), weekday(entry).c_str(),
                    hour, minute);
    case Repetition::monthly:
      return format("%s - %d - %02d:%02d", shown_text(text::monthly).c_str(), entry.day, hour,
                    minute);
    default:
      return shown_text(text::schedule_not_set);
  }
}
