#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <iomanip>
#include <sstream>

#include "schedule/schedule_code.h"
#include "tests/plain_upcoming.h"
#include "tests/tables.h"
#include "tests/zone.h"

namespace {

enum Part : std::size_t { codes, moments, clock_changes };
std::vector<Line> lines(Part table) { return read_tables("schedule.txt").at(table).lines; }

/// "03.07.2030 06:30:59" in a zone; 0 for no time.
std::int64_t seconds_of(const std::string& time, const char* where = "Europe/Prague") {
  const Zone zone(where);
  std::tm local{};
  local.tm_isdst = -1;
  return std::istringstream(time) >> std::get_time(&local, "%d.%m.%Y %T") ? mktime(&local) : 0;
}

/// An entry of "UPS action type day".
ScheduleEntry entry(std::int64_t time, const std::string& numbers, std::int64_t last = 0) {
  ScheduleEntry e{};
  e.time = static_cast<std::int32_t>(time);
  e.last = static_cast<std::int32_t>(last);
  EXPECT_EQ(std::sscanf(numbers.c_str(), "%hu %hhu %hhu %hhu", &e.ups, &e.action, &e.type, &e.day),
            4);
  return e;
}

TEST(ScheduleCode, HoldsNineBytesFromTheMostSignificant) {
  for (const Line& line : lines(codes)) {
    SCOPED_TRACE(line[0]);
    INI = {};
    INI.schedule[2] = entry(5, "6 0 2 3");  // without a code it stays as it is
    ScheduleEntry& last_slot = INI.schedule[schedule_count - 1];
    last_slot.code.assign(line[0]);
    last_slot.last = 77;
    DecodeSchedules();
    ScheduleEntry expected = entry(std::stol(line[1]), line[2], 77);
    expected.code.assign(line[0]);
    EXPECT_EQ(std::memcmp(&last_slot, &expected, sizeof expected), 0);
    EXPECT_EQ(INI.schedule[2].ups, 6);

    if (line[3] == "-") continue;
    EncodeSchedules();
    EXPECT_EQ(last_slot.code.view(), line[3]);
    EXPECT_EQ(last_slot.time != 0, expected.action != 0);  // an unused entry is cleared whole
  }
  EXPECT_EQ(get_hex("aF"), 0xAF);
  EXPECT_EQ(get_hex("0/"), 0xFF);
  EXPECT_EQ(get_hex("\xff\xff"), 0xBF);
}

TEST(TestSchedules, FiresInItsLocalMinute) {
  const Zone zone("Europe/Prague");
  static Record record;
  for (const Line& line : lines(moments)) {
    record.schedule[1] = entry(seconds_of(line[1]), line[2], seconds_of(line[3]));
    const int fires = std::stoi(line[5]);
    ShedAction = {};
    EXPECT_EQ(TestSchedules(seconds_of(line[4]), record, 1), fires) << line[0];
    EXPECT_EQ(ShedAction.ups, fires) << line[0];  // a match alone is copied
  }
}

TEST(NextActions, ShowOneAMinuteAfterTheTenth) {
  const Zone zone("UTC");
  static Record record;
  for (int i = 0; i < schedule_count; ++i) {
    record.schedule[i] = entry(6 * 3600 + 1800, std::to_string(i) + " 1 2 0");
  }
  const std::int64_t due = seconds_of("01.04.2030 06:30:00", "UTC");
  std::int64_t start = due - 6 * 3600 + 25;
  const std::int64_t end = upcoming_end(start);
  EXPECT_EQ(end - start, 8640000);
  const Lines lines = upcoming_lines(start, end, record);
  ASSERT_EQ(lines.size(), 109U);
  EXPECT_EQ(lines[9], "01.04.2030 06:30 9 1");
  EXPECT_EQ(lines[10], "02.04.2030 06:30 0 1");
  EXPECT_EQ(lines[108], "09.07.2030 06:30 0 1");
  for (const int matches : {109, 0}) {  // a second call goes on where the first has ended
    EXPECT_EQ(next_actions(start, end, record, [](const auto&, const auto&) {}), matches);
    EXPECT_EQ(start, end);
  }
  // The minute that holds the start counts, the minute that begins at the end does not.
  EXPECT_EQ(upcoming_lines(due + 59, due + 119, record).size(), 10U);
  EXPECT_EQ(upcoming_lines(due - 60, due, record).size(), 0U);
}

TEST(NextActions, AreThoseOfEveryMinuteAroundEveryClockChange) {
  for (const Line& line : lines(clock_changes)) {
    SCOPED_TRACE(line[1]);
    const std::int64_t start = seconds_of(line[0], "UTC");
    const Zone zone(line[1]);
    // Every quarter of an hour from 00:07 in the local time of the day of the change.
    const std::time_t next_day = start + 86400;
    const std::tm local = *std::localtime(&next_day);
    const std::int64_t first = next_day - local.tm_hour * 3600 - local.tm_min * 60 + 420;
    static Record record;
    for (int i = 0; i < schedule_count; ++i) {
      const int type = 1 + i % 4;
      const int day = type == 3 ? local.tm_wday : local.tm_mday;
      const char* action = i == 6 ? " 0 " : " 1 ";  // one of them is unused
      const std::int64_t due = first + i * 900;
      record.schedule[i] =
          entry(due - (type - 1) * 86400,
                std::to_string(i) + action + std::to_string(type) + " " + std::to_string(day),
                i == 5 ? due : 0);  // and one has fired
    }
    const std::int64_t end = start + 3 * 86400;
    const Lines plain = plain_upcoming_lines(start, end, record);
    EXPECT_GE(plain.size(), 15U);
    EXPECT_EQ(upcoming_lines(start, end, record), plain);
  }
}

}  // namespace
