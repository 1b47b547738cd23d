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
const char* weekday(const ScheduleEntry& entry) {
  static_assert(text::weekday_first + UINT8_MAX < text_count);
  return LangText[text::weekday_first + entry.day];
}

std::string date(const std::tm& at) {
  return format("%02d.%02d.%04d", at.tm_mday, at.tm_mon + 1, at.tm_year + 1900);
}

}  // namespace

std::string schedule_ups(const ScheduleEntry& entry) {
  return ups_in_use(entry.ups) ? printable(INI1.ups[entry.ups].Name.view()) : "?";
}

std::string schedule_keyword(const ScheduleEntry& entry) {
  return known_action(entry) ? keywords[entry.action - 1] : LangText[text::schedule_not_set];
}

std::string schedule_action(const ScheduleEntry& entry) {
  if (!known_action(entry)) return LangText[text::schedule_not_set];
  return LangText[entry.action == os_shutdown ? text::action_shutdown
                                              : offered_actions[entry.action - 1]];
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
      return LangText[text::schedule_not_set];
  }
}

std::string schedule_time(const ScheduleEntry& entry) {
  const std::tm at = local_time(entry.time);
  const int hour = at.tm_hour;
  const int minute = at.tm_min;
  switch (Repetition{entry.type}) {
    case Repetition::once:
      return format("%s - %s - %02d:%02d", LangText[text::once], date(at).c_str(), hour, minute);
    case Repetition::daily:
      return format("%s - %02d:%02d", LangText[text::daily], hour, minute);
    case Repetition::weekly:
      return format("%s - %s - %02d:%02d", LangText[text::weekly], weekday(entry), hour, minute);
    case Repetition::monthly:
      return format("%s - %d - %02d:%02d", LangText[text::monthly], entry.day, hour, minute);
    default:
      return LangText[text::schedule_not_set];
  }
}
