#include <gtest/gtest.h>

#include <ctime>

#include "tests/walk.h"

namespace {

TEST(Upcoming, ListsAHundredDaysWhateverTheHeight) {
  constexpr std::int64_t day_seconds = 86400;
  const std::int64_t first = std::time(nullptr) + 6 * 3600;  // far from the present minute
  char data[24];
  std::snprintf(data, sizeof data, "\"%08X0001070200\"", static_cast<unsigned>(first));
  const Folder folder;
  for (const char* slot : {"00", "01", "02", "03"}) {
    folder.set("kestrel.ini", std::string("Schedule_") + slot, "Data", slot[1] == '0' ? data : "");
  }
  const std::pair<int, int> cases[] = {
      // rows of the terminal, row of the first item
      {24, 21}, {50, 47}, {101, 98}, {104, 101}, {108, 105}, {200, 105}};
  for (const auto& [rows, more] : cases) {
    SCOPED_TRACE(rows);
    Operator op(folder, {.rows = rows, .environment = {{"TZ", "UTC"}}});
    op.open("4/17");
    EXPECT_EQ(op.row(more), english("  --> $show_more"));
    EXPECT_EQ(op.row(more + 2), english("      $back"));
    EXPECT_EQ(arrow_path(op), "1 3 1");
    for (int row = more - 2, day = 99; row > 0 && day >= 0; --row, --day) {
      const std::time_t at = first + day * day_seconds;
      char line[80];
      std::strftime(line, sizeof line, "%d.%m.%Y %H:%M Rack A right           ", std::gmtime(&at));
      EXPECT_EQ(op.row(row), line + english("$action_shutdown"));
    }
  }
}

}  // namespace
