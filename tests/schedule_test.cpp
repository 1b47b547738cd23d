#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "schedule/encoding.h"
#include "schedule/upcoming.h"
#include "tests/plain_upcoming.h"
#include "tests/zone.h"

namespace {

using Lines = std::vector<std::string>;

ScheduleEntry entry(std::int64_t time, int ups, int action, int type, int day = 0,
                    std::int64_t last = 0) {
  ScheduleEntry e{};
  e.time = static_cast<std::int32_t>(time);
  e.ups = static_cast<std::uint16_t>(ups);
  e.action = static_cast<std::uint8_t>(action);
  e.type = static_cast<std::uint8_t>(type);
  e.day = static_cast<std::uint8_t>(day);
  e.last = static_cast<std::int32_t>(last);
  return e;
}

/// An empty schedule but for the given entries.
const Record& schedule_of(const std::vector<ScheduleEntry>& entries) {
  static Record record;
  record = {};
  std::copy(entries.begin(), entries.end(), record.schedule);
  return record;
}

TEST(ScheduleCode, HoldsNineBytesFromTheMostSignificant) {
  struct Case {
    const char* in_file;
    ScheduleEntry entry;
    const char* written;
  };
  const Case cases[] = {
      {"4B3DF1D00001040303", entry(1262350800, 1, 4, 3, 3), "4B3DF1D00001040303"},
      {"4b3df1d00001040303", entry(1262350800, 1, 4, 3, 3), "4B3DF1D00001040303"},
      {"FFFFFFFFFFFFFFFFFF", entry(-1, 0xFFFF, 255, 255, 255), "FFFFFFFFFFFFFFFFFF"},
      {"8000000012AB01000A", entry(INT32_MIN, 0x12AB, 1, 0, 10), "8000000012AB01000A"},
      // A used field of 20 characters; what follows the digits does not count.
      {"00000001000F070204XY", entry(1, 15, 7, 2, 4), "00000001000F070204"},
      // Too short, and no digit: the zeros behind the end are read as -48 each.
      {"G0000000000001", entry(0x70000000, 0, 1, 0xD0, 0xD0), nullptr},
      {"4B3DF1D00001000303", entry(1262350800, 1, 0, 3, 3), ""},  // no action, nothing kept
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.in_file);
    INI = {};
    ScheduleEntry& last_slot = INI.schedule[schedule_count - 1];
    last_slot.code.assign(c.in_file);
    last_slot.last = 77;
    DecodeSchedules();
    ScheduleEntry expected = c.entry;
    expected.code.assign(c.in_file);
    expected.last = 77;
    EXPECT_EQ(std::memcmp(&last_slot, &expected, sizeof expected), 0);

    if (c.written == nullptr) continue;
    EncodeSchedules();
    EXPECT_EQ(last_slot.code.view(), c.written);
    EXPECT_EQ(last_slot.time != 0, c.entry.action != 0);  // an unused entry is cleared whole
  }
}

TEST(ScheduleCode, StaysBesideFieldsThatTheFileDidNotHold) {
  INI = {};
  INI.schedule[2] = entry(5, 6, 0, 2, 3);
  DecodeSchedules();
  EXPECT_EQ(INI.schedule[2].ups, 6);
  EXPECT_EQ(get_hex("aF"), 0xAF);
  EXPECT_EQ(get_hex("0/"), 0xFF);
  EXPECT_EQ(get_hex("\xff\xff"), 0xBF);
}

TEST(TestSchedules, FiresInItsLocalMinute) {
  // In Prague: the entry's time is 01.01.2030 06:30, the moments lie in July, but for "once".
  constexpr std::int64_t winter = 1893475800;
  constexpr std::int64_t wednesday = 1909283400;  // 03.07.2030 06:30
  constexpr std::int64_t sunday = 1909629000;     // 07.07.2030 06:30
  struct Case {
    const char* what;
    ScheduleEntry entry;
    std::int64_t now;
    int fires;
  };
  const Case cases[] = {
      {"once", entry(winter, 1, 1, 1), winter, 1},
      {"once, at the end of the minute", entry(winter, 1, 1, 1), winter + 59, 1},
      {"once, with seconds", entry(winter + 42, 1, 1, 1), winter, 1},
      {"once, a minute late", entry(winter, 1, 1, 1), winter + 60, 0},
      {"once, on another day", entry(winter, 1, 1, 1), winter + 86400, 0},
      {"once, a month later", entry(winter, 1, 1, 1), winter + 31 * 86400, 0},
      {"once, a year later", entry(winter, 1, 1, 1), winter + 365 * 86400, 0},
      {"daily, in summer", entry(winter, 1, 1, 2), wednesday, 1},
      {"daily, an hour off", entry(winter, 1, 1, 2), wednesday + 3600, 0},
      {"weekly", entry(winter, 1, 1, 3, 3), wednesday, 1},
      {"weekly, on Sunday", entry(winter, 1, 1, 3, 0), sunday, 1},
      {"weekly, on another day", entry(winter, 1, 1, 3, 0), wednesday, 0},
      {"monthly", entry(winter, 1, 1, 4, 3), wednesday, 1},
      {"monthly, on another day", entry(winter, 1, 1, 4, 1), wednesday, 0},
      {"no such type", entry(winter, 1, 1, 5, 3), wednesday, 0},
      {"no action", entry(winter, 1, 0, 2), wednesday, 0},
      {"fired in this minute", entry(winter, 1, 1, 2, 0, wednesday + 59), wednesday, 0},
      {"fired a minute ago", entry(winter, 1, 1, 2, 0, wednesday - 1), wednesday, 1},
  };
  const Zone zone("Europe/Prague");
  for (const Case& c : cases) {
    ShedAction = {};
    EXPECT_EQ(TestSchedules(c.now, schedule_of({{}, c.entry}), 1), c.fires) << c.what;
    EXPECT_EQ(ShedAction.ups, c.fires) << c.what;  // a match alone is copied
  }
}

TEST(NextActions, AreListedByTimeAndEntry) {
  // From 20.03.2030 00:00 in Prague, where the clock skips 02:00 to 03:00 on the 31st.
  constexpr std::int64_t start = 1900191600;
  constexpr std::int64_t winter = 1893475800;  // 06:30
  const Zone zone("Europe/Prague");
  const Record& record = schedule_of({
      entry(winter, 3, 5, 4, 31),
      entry(winter - 4 * 3600, 0, 1, 4, 31),
      {},
      entry(1903840200, 15, 7, 1),
      entry(winter, 2, 2, 4, 31, 1901161800),
      entry(winter, 9, 9, 9, 9),
  });
  const Lines expected = {
      "31.03.2030 06:30 3 5",   // not the one that fired in this minute
      "01.05.2030 06:30 15 7",  // and none in April
      "31.05.2030 02:30 0 1",  "31.05.2030 06:30 3 5", "31.05.2030 06:30 2 2",
  };
  EXPECT_EQ(upcoming_lines(start, upcoming_end(start), record), expected);
  EXPECT_EQ(ShedAction.ups, 2);
}

TEST(NextActions, ShowOneAMinuteAfterTheTenth) {
  const Zone zone("UTC");
  std::vector<ScheduleEntry> daily(schedule_count);
  for (int i = 0; i < schedule_count; ++i) {
    daily[static_cast<std::size_t>(i)] = entry(6 * 3600 + 1800, i, 1, 2);
  }
  Record record = schedule_of(daily);

  const std::int64_t now = 1901232000 + 25;  // 01.04.2030
  std::int64_t start = now;
  const std::int64_t end = upcoming_end(now);
  EXPECT_EQ(end - now, 8640000);
  const Lines lines = upcoming_lines(now, end, record);
  ASSERT_EQ(lines.size(), 109U);
  EXPECT_EQ(lines[9], "01.04.2030 06:30 9 1");
  EXPECT_EQ(lines[10], "02.04.2030 06:30 0 1");
  EXPECT_EQ(lines[108], "09.07.2030 06:30 0 1");

  const ShowAction ignore = [](const std::tm&, const ScheduleEntry&) {};
  EXPECT_EQ(next_actions(start, end, record, ignore), 109);
  EXPECT_EQ(start, end);
  EXPECT_EQ(next_actions(start, end, record, ignore), 0);
  EXPECT_EQ(start, end);

  // The minute that holds the start counts, the minute that begins at the end does not.
  start = 1901232000 + 6 * 3600 + 1859;
  EXPECT_EQ(next_actions(start, start + 60, record, ignore), 10);
  start = 1901232000 + 6 * 3600 + 1740;
  EXPECT_EQ(next_actions(start, start + 60, record, ignore), 0);
}

TEST(NextActions, AreThoseOfEveryMinuteAroundEveryClockChange) {
  struct Case {
    const char* zone;
    std::int64_t start;  // a day before the change
  };
  const Case cases[] = {
      {"Europe/Prague", 1901062800},
      {"Europe/Prague", 1919206800 + 7},
      {"America/New_York", 1919829600},
      {"America/St_Johns", 1899264600},
      {"Australia/Lord_Howe", 1901631600},  // by half an hour
      {"Australia/Lord_Howe", 1917444600},
      {"Asia/Kolkata", 1901062800},
      {"Pacific/Auckland", 1901631600},
      {"Pacific/Apia", 1325152800},                    // leaves out a whole day
      {"AAA0BBB-0:20,J20/1:07,J40/3:11", 1895014020},  // at odd minutes
      {"AAA0BBB-0:20,J20/1:07,J40/3:11", 1896748200},
      {"AAA0BBB,J20/1:05,J20/2:55", 1895011200},           // summer lasts less than an hour
      {"AAA0:00:33BBB-1:00:12,J20/1:07,J40", 1895014020},  // and seconds
      {nullptr, 1901062800},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.zone == nullptr ? "none" : c.zone);
    const Zone zone(c.zone);
    std::vector<ScheduleEntry> entries;
    for (int i = 0; i < schedule_count; ++i) {
      // Every quarter of an hour from 00:07 in the local time of the day of the change.
      const std::time_t next_day = static_cast<std::time_t>(c.start) + 86400;
      const std::tm local = *std::localtime(&next_day);
      const std::int64_t midnight = next_day - local.tm_hour * 3600 - local.tm_min * 60;
      const int type = 1 + i % 4;
      const int day = type == 3 ? local.tm_wday : local.tm_mday;
      entries.push_back(entry(midnight - (type - 1) * 86400 + 420 + i * 900, i, 1, type, day));
    }
    const Record& record = schedule_of(entries);
    const std::int64_t end = c.start + 3 * 86400;
    const Lines plain = plain_upcoming_lines(c.start, end, record);
    EXPECT_GE(plain.size(), 15U);
    EXPECT_EQ(upcoming_lines(c.start, end, record), plain);
  }
}

}  // namespace
