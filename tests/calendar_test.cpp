#include "schedule/calendar.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "tests/tables.h"
#include "tests/zone.h"

static std::time_t clock_shows = 0;  // 0 for the real time

/// Takes the place of the C library's.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" std::time_t time(std::time_t* result) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const std::time_t seconds = clock_shows != 0 ? clock_shows : now.tv_sec;
  if (result != nullptr) *result = seconds;
  return seconds;
}

namespace {

std::int32_t call(const std::string& function, const std::string& argument) {
  if (function == "check_datetime") return check_datetime(argument);
  if (function == "check_time") return check_time(argument);
  std::tm t{};
  std::istringstream(argument) >> t.tm_year >> t.tm_mon >> t.tm_mday >> t.tm_hour >> t.tm_min >>
      t.tm_sec;
  if (function == "my_mktime") return my_mktime(&t);
  return totalsec(t.tm_year, t.tm_mon, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
}

TEST(Calendar, CountsSecondsInEveryZoneAndSeason) {
  const std::map<std::string, std::string> seasons = {
      {"winter", "1863172800"}, {"summer", "1878811200"}, {"both", "1863172800 1878811200"}};
  for (const Table& function : read_tables("calendar.txt")) {
    for (const Line& line : function.lines) {
      const Zone zone(line[1]);
      std::istringstream clock(seasons.contains(line[0]) ? seasons.at(line[0]) : line[0]);
      for (std::time_t now = 0; clock >> now;) {
        clock_shows = now;
        const std::int32_t result = call(function.name, line[2]);
        clock_shows = 0;
        EXPECT_EQ(std::to_string(result), line[3]) << "in line " << line.number << " at " << now;
      }
      EXPECT_TRUE(clock.eof()) << "line " << line.number << " has a clock that cannot be read";
    }
  }
}

}  // namespace
