#pragma once

#include <string>
#include <vector>

#include "schedule/firing.h"
#include "schedule/upcoming.h"

using Lines = std::vector<std::string>;

/// A match as one line of text: the local time, the UPS and the action.
inline std::string upcoming_line(const std::tm& at, const ScheduleEntry& entry) {
  char text[20];
  std::strftime(text, sizeof text, "%d.%m.%Y %H:%M", &at);
  return text + (" " + std::to_string(entry.ups)) + " " + std::to_string(entry.action);
}

/// The lines of `next_actions`.
inline Lines upcoming_lines(std::int64_t start, std::int64_t end, const Record& record) {
  Lines lines;
  next_actions(start, end, record, [&](const std::tm& at, const ScheduleEntry& entry) {
    lines.push_back(upcoming_line(at, entry));
  });
  return lines;
}

/// The same list the plain way: `TestSchedules` for every entry in every minute.
inline Lines plain_upcoming_lines(std::int64_t start, std::int64_t end, const Record& record) {
  Lines lines;
  for (std::int64_t t = start; t < end; t += 60) {
    for (int i = 0; i < schedule_count; ++i) {
      if (record.schedule[i].action == 0 || TestSchedules(t, record, i) == 0) continue;
      const auto now = static_cast<std::time_t>(minute_of(t));
      lines.push_back(upcoming_line(*std::localtime(&now), ShedAction));
      if (lines.size() > 9) break;
    }
  }
  return lines;
}
