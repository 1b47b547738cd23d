#include "check/schedule_meaning.h"

#include <cctype>
#include <ctime>
#include <string>
#include <string_view>

#include "check/in_use.h"
#include "schedule/calendar.h"
#include "schedule/firing.h"
#include "tui/format.h"

namespace {

constexpr std::size_t code_digits = 18;
constexpr int last_weekday = 6;
constexpr int longest_month = 31;
constexpr int shortest_month = 28;

std::string out_of_bounds(const char* name, int number, int first, int last) {
  return number >= first && number <= last
             ? ""
             : format("its %s is %d, not %d to %d", name, number, first, last);
}

/// Why the code of an entry is no code. Empty when it is one, and for an entry without an action,
/// which is not in use.
std::string fault_of(const ScheduleEntry& entry) {
  const std::string_view code = entry.code.view();
  if (code.empty()) return "";
  for (const char c : code) {
    if (std::isxdigit(static_cast<unsigned char>(c)) == 0)
      return format("\"%c\" is no hexadecimal digit", c);
  }
  if (code.size() != code_digits)
    return format("it has %zu digits, not %zu", code.size(), code_digits);
  if (entry.action == 0) return "";
  std::string fault = out_of_bounds("action", entry.action, 1, operating_system_shutdown);
  if (fault.empty()) fault = out_of_bounds("repetition", entry.type, 1, 4);
  if (!fault.empty()) return fault;
  if (Repetition{entry.type} == Repetition::weekly)
    return out_of_bounds("weekday", entry.day, 0, last_weekday);
  if (Repetition{entry.type} == Repetition::monthly)
    return out_of_bounds("day", entry.day, 1, longest_month);
  return "";
}

/// Local time, as the schedules are set.
std::string date_of(const ScheduleEntry& entry) {
  const std::tm local = local_time(entry.time);
  char date[40];
  return {date, std::strftime(date, sizeof date, "%Y-%m-%d %H:%M", &local)};
}

}  // namespace

bool is_schedule(const ScheduleEntry& entry) {
  return !entry.code.empty() && entry.action != 0 && fault_of(entry).empty();
}

bool is_past(const ScheduleEntry& entry) {
  return Repetition{entry.type} == Repetition::once && entry.time < minute_of(std::time(nullptr));
}

void check_schedules() {
  for (int i = 0; i < schedule_count; ++i) {
    const ScheduleEntry& entry = INI.schedule[i];
    const auto add = [&](Class kind, const std::string& other) {
      add_finding(kind, entry_of(source_of(main_file), "Schedule_", i), "Data",
                  {.before = std::string(entry.code.view()), .other = other});
    };
    const std::string fault = fault_of(entry);
    if (!fault.empty()) add(Class::schedule_code, fault);
    if (!is_schedule(entry)) continue;
    if (is_past(entry)) add(Class::schedule_past, date_of(entry));
    if (Repetition{entry.type} == Repetition::monthly && entry.day > shortest_month)
      add(Class::schedule_day, std::to_string(entry.day));
  }
}
