#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>

#include "tests/arrow_path.h"
#include "tests/tables.h"

namespace {

const Options in_utc{.environment = {{"TZ", "UTC"}}};

constexpr std::int64_t day_seconds = 86400;
constexpr std::int64_t morning = 2128660200;  // 15.06.2037 06:30

/// An entry as the file holds it.
std::string data(std::int64_t time, unsigned ups, unsigned action, unsigned type, unsigned day) {
  char text[32];
  std::snprintf(text, sizeof text, "\"%08X%04X%02X%02X%02X\"", static_cast<unsigned>(time), ups,
                action, type, day);
  return text;
}

std::string section(std::size_t entry) {
  return (entry < 10 ? "Schedule_0" : "Schedule_") + std::to_string(entry);
}

/// The demo configuration with these entries instead of its own.
Folder::Files with_schedules(const std::vector<std::string>& entries) {
  std::string config = demo("kestrel.ini");
  const std::size_t first = config.find("[Schedule_00]");
  config.erase(first, config.find("[Mess_00]") - first);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    config.append("\n[").append(section(i)).append("]\nData=").append(entries[i]).append("\n");
  }
  return {{"kestrel.ini", config}};
}

TEST(ScheduleEditor, OffersTheUpsSlotsAsTheyAreEdited) {
  const Folder folder(demo_with("UPS_01.Connection=5"));
  Operator op(folder, in_utc);
  op.open("2/2/4/2.2");
  op.type("1161\r");
  op.open("0/0/0/4/1/2");
  EXPECT_TRUE(op.row(8).ends_with(" LUMEN39T3000       SNMP(1628) - /dev/ttyS0 - 1161"));
  op.choose("2");
  EXPECT_EQ(op.row(9), "  --> 2 - UPS name:     Rack A right");
}

TEST(ScheduleEditor, SavesWhatIsChosenAndTyped) {
  const std::vector<Line> edits = read_table("schedule_edits.txt");
  std::vector<std::string> before;
  std::vector<std::string> after;
  for (const Line& line : edits) {
    before.push_back('"' + line[0] + '"');
    if (!line[2].empty()) after.push_back('"' + line[2] + '"');
  }
  const Folder folder(with_schedules(before));
  Operator op(folder, in_utc);
  op.choose("4");
  for (std::size_t i = 0; i < edits.size(); ++i) {
    op.choose(std::to_string(i + 1));
    for (const std::string& step : split(edits[i][1], ";")) {
      if (step.empty()) continue;
      const std::size_t blank = step.find(' ');
      op.open(step.substr(0, blank));
      if (blank != std::string::npos) op.type(keys(step.substr(blank + 1)));
    }
    if (!edits[i][2].empty()) op.leave();
  }
  EXPECT_EQ(op.row(16), "      13 - ...");
  EXPECT_EQ(op.quit("y"), 1);
  after.resize(edits.size());  // with nothing at the end
  for (std::size_t i = 0; i < after.size(); ++i) {
    std::string saved = folder.value("kestrel.ini", section(i), "Data");
    const std::int64_t time = saved.empty() ? 0 : std::stoll(saved.substr(1, 8), nullptr, 16);
    if (std::abs(time - std::time(nullptr)) <= day_seconds) {
      saved = data(time % day_seconds, 0, 0, 0, 0).substr(0, 9) + saved.substr(9);
    }
    EXPECT_EQ(saved, after[i]) << section(i);
  }
}

TEST(ScheduleEditor, AsksAgainForAnInvalidTime) {
  const Folder folder(with_schedules({data(0, 0, 4, 3, 2)}));
  Operator op(folder, in_utc);
  op.open("4/1/4/1");
  EXPECT_TRUE(op.shows("Enter the time [day.month.year hour:minute]"));
  EXPECT_TRUE(op.echo() && op.canonical() && op.cursor_visible());
  op.type(std::string(121, '1') + "\r");
  op.expect("The time is not valid or lies in the past");
  EXPECT_EQ(op.bells(), 2);  // for the 121st character and for the time
  op.type("9");
  op.expect("New value       9");
  EXPECT_FALSE(op.shows("The time is not valid"));
  op.type("\x7f\r");
  op.expect("Weekly - Tuesday - 00:00");
  EXPECT_FALSE(op.echo() || op.canonical() || op.cursor_visible());
}

/// Far from the present minute, so that no case runs across it.
std::int64_t in_six_hours() { return std::time(nullptr) + 6 * 3600; }

TEST(Upcoming, ListsAHundredDaysWhateverTheHeight) {
  const std::int64_t first = in_six_hours();
  const Folder folder(with_schedules({data(first, 1, 7, 2, 0)}));
  Options options = in_utc;
  const std::pair<int, int> cases[] = {
      // rows of the terminal, row of the first item
      {24, 21}, {50, 47}, {101, 98}, {104, 101}, {108, 105}, {200, 105}};
  for (const auto& [rows, more] : cases) {
    SCOPED_TRACE(rows);
    options.rows = rows;
    Operator op(folder, options);
    op.open("4/17");
    EXPECT_EQ(op.row(more), "  --> Show more");
    EXPECT_EQ(op.row(more + 2), "      Leave this menu");
    EXPECT_EQ(arrow_path(op, more), "1 3 1");
    for (int row = more - 2, day = 99; row > 0 && day >= 0; --row, --day) {
      const std::time_t at = first + day * day_seconds;
      char line[80];
      std::strftime(line, sizeof line, "%d.%m.%Y %H:%M Rack A right           ", std::gmtime(&at));
      EXPECT_EQ(op.row(row), std::string(line) + "Operating system shutdown");
    }
  }
}

TEST(Upcoming, IsDrawnAgainOnASignalAndEmptyOnShowMore) {
  const Folder folder(with_schedules({data(in_six_hours(), 16, 4, 2, 0)}));
  Operator op(folder, in_utc);
  op.open("4/17");
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
