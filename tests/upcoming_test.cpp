#include <gtest/gtest.h>

#include <ctime>

#include "tests/walk.h"

namespace {

constexpr std::int64_t day_seconds = 86400;

/// Starts with one daily action, far from the present minute, so that no case runs across it.
class Upcoming : public testing::Test {
 protected:
  Operator& open(int rows, const char* ups_and_action) {
    char values[140];
    std::snprintf(values, sizeof values,
                  "Schedule_00.Data=\"%08X%s0200\"; Schedule_01.Data=\"\"; Schedule_02.Data=\"\"; "
                  "Schedule_03.Data=\"\"",
                  static_cast<unsigned>(first), ups_and_action);
    walk.emplace(demo_with(values), Options{.rows = rows});
    walk->op().open("4/17");
    return walk->op();
  }
  const std::int64_t first = std::time(nullptr) + 6 * 3600;
  std::optional<Walk> walk;
};

TEST_F(Upcoming, ListsAHundredDaysWhateverTheHeight) {
  const std::pair<int, int> cases[] = {
      // rows of the terminal, row of the first item
      {24, 21}, {50, 47}, {101, 98}, {104, 101}, {108, 105}, {200, 105}};
  for (const auto& [rows, more] : cases) {
    SCOPED_TRACE(rows);
    Operator& op = open(rows, "000107");
    EXPECT_EQ(op.row(more), "  --> Show more");
    EXPECT_EQ(op.row(more + 2), "      Leave this menu");
    EXPECT_EQ(arrow_path(op), "1 3 1");
    for (int row = more - 2, day = 99; row > 0 && day >= 0; --row, --day) {
      const std::time_t at = first + day * day_seconds;
      char line[80];
      std::strftime(line, sizeof line, "%d.%m.%Y %H:%M Rack A right           ", std::gmtime(&at));
      EXPECT_EQ(op.row(row), std::string(line) + "Operating system shutdown");
    }
  }
}

TEST_F(Upcoming, IsDrawnAgainOnASignalAndEmptyOnShowMore) {
  Operator& op = open(24, "001004");
  op.down();
  op.resize(40, 80);
  EXPECT_EQ(op.arrow(), 39);
  EXPECT_TRUE(op.row(35).ends_with(" ?                      UPS test"));
  op.up();
  op.enter();
  EXPECT_EQ(op.arrow(), 5);
  op.resize(24, 80);
  EXPECT_EQ(op.arrow(), 5);
  op.down();
  op.enter();
  EXPECT_EQ(op.row(21), "  --> 17 - Upcoming actions");
  EXPECT_EQ(op.quit(), 0);
}

}  // namespace
