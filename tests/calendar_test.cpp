#include "schedule/calendar.h"

#include <climits>

#include "gtest/gtest.h"
#include "tests/zone.h"

namespace {

std::time_t clock_shows = 0;  // 0 for the real time

constexpr std::time_t january = 1863172800;  // 15.01.2029 12:00 UTC
constexpr std::time_t july = 1878811200;     // 15.07.2029 12:00 UTC

/// What `call` returns at another moment.
template <typename Call>
std::int32_t at(std::time_t now, Call call) {
  clock_shows = now;
  const std::int32_t result = call();
  clock_shows = 0;
  return result;
}

}  // namespace

/// Takes the place of the C library's, so that the cases hold in summer, in winter and in 2035.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" std::time_t time(std::time_t* result) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const std::time_t seconds = clock_shows != 0 ? clock_shows : now.tv_sec;
  if (result != nullptr) *result = seconds;
  return seconds;
}

namespace {

struct Date {
  const char* zone;
  const char* text;
  std::int32_t in_january;  // when typed in January
  std::int32_t in_july;
};

// Counted by another program in another language.
const Date dates[] = {
    {"UTC", "01.01.2030 00:00", 1893456000, 1893456000},
    {"UTC", "29.02.2032 10:00", 1961661600, 1961661600},
    {"UTC", "29.02.2033 10:00", 1993284000, 1993284000},  // 1 March
    {"UTC", "31.04.2034 12:00", 2030097600, 2030097600},  // 1 May
    {"UTC", "31.12.2031 23:59", 1956527940, 1956527940},
    {"UTC", "00.03.2032 00:00", 1961625600, 1961625600},  // 29 February
    {"UTC", "19.01.2038 03:14", 2147483640, 2147483640},
    {"UTC", "19.01.2038 03:15", 0, 0},  // past 32 bits
    {"UTC", "31.12.2038 23:59", 0, 0},
    {"UTC", "01.01.2039 00:00", 0, 0},
    {"UTC", "01.01.1969 00:00", 0, 0},
    {"Europe/Prague", "01.01.2030 00:00", 1893452400, 1893452400},
    {"Europe/Prague", "01.07.2030 23:59", 1909173540, 1909173540},
    {"Europe/Prague", "31.03.2030 02:30", 0, 0},                    // skipped by the clock
    {"Europe/Prague", "27.10.2030 02:30", 1919295000, 1919295000},  // the second of two
    {"Europe/Prague", "19.01.2038 03:15", 0, 2147480100},  // past 32 bits before the hour is found
    {"America/New_York", "01.01.2030 00:00", 1893474000, 1893474000},
    {"America/New_York", "01.07.2030 23:59", 1909195140, 1909195140},
    {"America/New_York", "10.03.2030 02:30", 1899358200, 1899358200},  // 03:30, moved a day
    {"America/New_York", "10.03.2030 03:00", 1899360000, 1899360000},  // 04:00, moved a day
    {"America/New_York", "03.11.2030 01:30", 1919914200, 1919914200},  // the first of two
    {"America/New_York", "18.01.2038 23:30", 0, 0},
    {"Pacific/Honolulu", "01.01.2030 15:00", 1893546000, 1893546000},
    {"Asia/Kolkata", "01.01.2030 05:00", 1893456000, 1893456000},      // 05:30
    {"Asia/Kolkata", "01.07.2030 23:59", 1909159140, 1909159140},      // 23:29
    {"Pacific/Auckland", "01.01.2030 05:00", 1893513600, 1893513600},  // 2 January
    {"Pacific/Auckland", "01.01.2030 15:00", 1893463200, 1893463200},
    {"Pacific/Auckland", "01.07.2030 10:10", 1909174200, 1909174200},  // 2 July
    {"Australia/Lord_Howe", "01.01.2030 05:00", 1893434400, 1893520800},
    {"<+11>-11", "01.01.2030 05:00", 1893520800, 1893520800},  // 2 January
    {"<+11>-11", "01.01.2030 15:00", 1893470400, 1893470400},
    {"<-11>11", "01.01.2030 05:00", 1893513600, 1893513600},
    {"<-11>11", "01.01.2030 15:00", 1893463200, 1893463200},  // 31 December
    {"<-11>11", "18.01.2038 23:30", 2147423400, 2147423400},  // 17 January
};

TEST(CheckDatetime, FindsTheLocalTimeInEveryZoneAndSeason) {
  for (const Date& d : dates) {
    SCOPED_TRACE(std::string(d.zone) + " " + d.text);
    const Zone zone(d.zone);
    EXPECT_EQ(at(january, [&] { return check_datetime(d.text); }), d.in_january);
    EXPECT_EQ(at(july, [&] { return check_datetime(d.text); }), d.in_july);
  }
}

TEST(CheckDatetime, ReadsLooseTextAndRefusesTheRest) {
  struct Text {
    const char* text;
    std::int32_t result;
  };
  const Text texts[] = {
      {"10.10.2030 08:30", 1917851400},
      {"10.10.130 08:30", 1917851400},
      {"01.01.138 00:00", 2145916800},
      {" 10. 10x.2030, 8:30 Uhr", 1917851400},
      {"10.10.2030 08:30                                  9", 1917851400},
      {"10.10.2030 08:                                   30", 1917849780},  // cut at 50: minute 3
      {"1.13.2030 08:30", 0},
      {"1.0.2030 08:30", 0},
      {"32.10.2030 08:30", 0},
      {"10.10.2030 24:00", 0},
      {"10.10.2030 -1:00", 0},
      {"10.10.2030 08:60", 0},
      {"10.10.30 08:30", 0},
      {"10.10.99999999999999999999 08:30", 0},
      {"-99999999999999999999.-99999999999999999999.2030 08:30", 0},
      {"01.01.2030-10:00", 0},
      {"01.01,2030 10:00", 0},
      {"01.01.2030 10.00", 0},
      {"", 0},
      {"15.01.2029 11:59", 0},  // a minute ago
      {"15.01.2029 12:00", january},
  };
  const Zone zone("UTC");
  for (const Text& t : texts) {
    EXPECT_EQ(at(january, [&] { return check_datetime(t.text); }), t.result) << t.text;
  }
  EXPECT_EQ(at(january + 1, [] { return check_datetime("15.01.2029 12:00"); }), 0);
}

TEST(CheckTime, IsTodayPassedOrNot) {
  struct Case {
    const char* zone;
    const char* text;
    std::time_t now;
    std::int32_t result;
  };
  const Case cases[] = {
      {"UTC", "7:5", january + 59, 1863155100},
      {"UTC", "23:59", january, 1863215940},
      {"UTC", "x", january, 0},
      {"UTC", ":", january, 1863129600},  // midnight
      {"UTC", "24:00", january, 0},
      {"UTC", "12:60", january, 0},
      {"Europe/Prague", "07:05", july, 1878786300},
      {"Europe/Prague", "02:30", 1869127200, 0},  // on the day when the clock skips it
      {"America/New_York", "22:15", january, 1863227700},
      {"UTC", "07:05", 2177452800, 28799},  // 2039: the right hour of another day
      {"UTC", "23:00", 2177452800, 0},
  };
  for (const Case& c : cases) {
    const Zone zone(c.zone);
    EXPECT_EQ(at(c.now, [&] { return check_time(c.text); }), c.result) << c.zone << c.text;
  }
}

TEST(Totalsec, CarriesUpwardsAndKnowsItsBounds) {
  struct Case {
    int year, month, day, hour, minute, second;
    std::int32_t result;
  };
  const Case cases[] = {
      {70, 0, 0, 0, 0, 0, -1},
      {70, 0, 0, 0, 0, 1, 1},
      {100, 1, 28, 23, 59, 59, 951868799},  // 29 February
      {100, 13, 58, 47, 119, 120, 986173260},
      {130, 0, -1, -1, 0, 0, 1893366000},
      {131, -12, 0, 0, 0, 0, 1893456000},
      {130, -1, 0, 0, 0, 0, -1},
      {138, 0, 18, 3, 14, 7, INT_MAX},
      {138, 0, 18, 3, 14, 8, -1},
      {69, 12, 5, 0, 0, 0, -1},
      {139, 0, 0, 0, 0, 0, -1},
      {138, INT_MAX, 0, INT_MAX, INT_MAX, INT_MAX, -1},
      {70, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, -1},
  };
  const Zone zone("Europe/Prague");
  for (const Case& c : cases) {
    const auto count = [&] { return totalsec(c.year, c.month, c.day, c.hour, c.minute, c.second); };
    EXPECT_EQ(at(january, count), c.result) << c.year << "/" << c.month << "/" << c.day;
    // An hour less while it is summer now, whatever the date.
    const bool positive = c.result > 3600 && c.result != INT_MAX;
    if (positive) {
      EXPECT_EQ(at(july, count), c.result - 3600) << c.year;
    }
  }
}

TEST(MyMktime, EndsForEveryTime) {
  struct Case {
    const char* zone;
    std::tm local;
    std::int32_t result;
  };
  const auto tm = [](int year, int month, int day, int hour, int minute, int second) {
    std::tm local{};
    local.tm_year = year;
    local.tm_mon = month;
    local.tm_mday = day;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    return local;
  };
  const Case cases[] = {
      {"UTC", tm(130, 0, 1, 10, 0, 75), 1893492075},
      {"UTC", tm(130, 0, 1, -1, 0, 0), 0},
      {"UTC", tm(130, -1, 1, 10, 0, 0), 0},
      {"UTC", tm(138, 0, 31, 10, 0, 0), 0},
      {"UTC", tm(138, 0, 1, 10, 0, INT_MAX), 0},
      {"UTC", tm(130, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN), 0},
      {"America/New_York", tm(138, 0, 18, 23, 30, 0), 0},
      {"UTC", tm(139, 0, 1, 0, 0, 0), 3599},  // the hour search started from -1
      {"UTC", tm(70, 0, 1, 23, 0, -1), 86399},
  };
  for (const Case& c : cases) {
    const Zone zone(c.zone);
    EXPECT_EQ(my_mktime(&c.local), c.result) << c.local.tm_year << "/" << c.local.tm_mon;
  }
}

}  // namespace
