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
  struct Edit {
    std::string before;
    std::vector<std::pair<const char*, const char*>> steps;  // chosen, and typed then
    std::string after;
  };
  // The date of a time of the day does not count.
  const std::string free = "\"\"";
  const Edit edits[] = {
      {free, {{"3/1", ""}, {"4/1", "15.6.2037 6:30\r"}}, data(morning, 0, 1, 1, 0)},
      {free, {{"3/2", ""}, {"2/2", ""}, {"4/2", "7:5\r"}}, data(25500, 1, 2, 2, 0)},
      {free, {{"3/3", ""}, {"4/3", "23:59\r"}, {"1", ""}}, data(86340, 0, 3, 3, 0)},
      {free, {{"3/4", ""}, {"4/3", "0:00\r"}, {"7", ""}}, data(0, 0, 4, 3, 6)},
      {free, {{"3/5", ""}, {"4/4", "12:00\r31\r"}}, data(43200, 0, 5, 4, 31)},
      {data(morning, 2, 7, 1, 0), {{"3/6", ""}}, data(morning, 2, 6, 1, 0)},
      {data(morning, 0, 4, 1, 2), {{"4/2", "\r"}}, data(morning, 0, 4, 1, 2)},
      {data(morning, 0, 4, 1, 2), {{"4/3", "\x1b 9:00\r"}}, data(morning, 0, 4, 1, 2)},
      {data(morning, 0, 4, 1, 5), {{"4/4", "9:00\r\r"}}, data(32400, 0, 4, 4, 5)},
      {data(morning, 0, 4, 1, 5), {{"4/4", "9:00\r32\r"}}, data(32400, 0, 4, 4, 5)},
      {data(morning, 0, 4, 1, 5), {{"4/1", "1.1.2020 9:00\r\r"}}, data(morning, 0, 4, 1, 5)},
      {data(morning, 0, 4, 1, 5), {{"4/2", "24:00\r9:00\r"}}, data(32400, 0, 4, 2, 5)},
      {data(morning, 0, 4, 1, 5), {{"1", ""}}, ""},
      {data(morning, 0, 4, 1, 5), {}, ""},  // has moved up
  };
  std::vector<std::string> before;
  for (const Edit& e : edits) before.push_back(e.before);
  const Folder folder(with_schedules(before));
  Operator op(folder, in_utc);
  op.choose("4");
  for (std::size_t i = 0; i < std::size(edits); ++i) {
    op.choose(std::to_string(i + 1));
    for (const auto& [path, typed] : edits[i].steps) {
      op.open(path);
      op.type(typed);
    }
    if (edits[i].steps.empty() || !edits[i].after.empty()) op.leave();
  }
  EXPECT_EQ(op.row(16), "      13 - ...");
  EXPECT_EQ(op.quit("y"), 1);
  for (std::size_t i = 0; i + 2 < std::size(edits); ++i) {
    const std::string saved = folder.value("kestrel.ini", section(i), "Data");
    const std::int64_t time = std::stoll(saved.substr(1, 8), nullptr, 16);
    const bool today = std::abs(time - std::time(nullptr)) <= day_seconds;
    EXPECT_EQ(data(today ? time % day_seconds : time, 0, 0, 0, 0).substr(0, 9) + saved.substr(9),
              edits[i].after);
  }
  EXPECT_EQ(folder.value("kestrel.ini", section(12), "Data"), before.back());
  EXPECT_EQ(folder.value("kestrel.ini", section(13), "Data"), "");
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
