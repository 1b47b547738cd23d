#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

#include "tests/walk.h"
#include "tui/format.h"

namespace {

TEST(Upcoming, ListsAHundredDaysWhateverTheHeight) {
  constexpr std::int64_t day_seconds = 86400;
  const std::int64_t first = std::time(nullptr) + 6 * 3600;  // far from the present minute
  const Folder folder(
      demo_with(format("Schedule_00.Data=\"%08X0001070200\"; Schedule_01.Data=; "
                       "Schedule_02.Data=; Schedule_03.Data=",
                       static_cast<unsigned>(first))));
  for (const int rows : {24, 50, 101, 104, 108, 200}) {
    const int more = std::min(rows - 3, 105);  // the row of the first item
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
