#include <gtest/gtest.h>

#include <sstream>

#include "tests/operator.h"
#include "tests/tables.h"

namespace {

struct Entry {
  std::string keys;
  bool number;
  bool refused;
};

/// What is typed one after the other where a line leads: nothing at a switch, many numbers.
std::vector<Entry> entries(const std::string& typed, const std::string& refused) {
  if (refused.empty()) return {{typed.empty() ? "" : keys(typed), false, false}};
  std::vector<Entry> all;
  std::string number;
  for (std::istringstream in(typed); in >> number;) all.push_back({number + "\r", true, false});
  for (std::istringstream in(refused); in >> number;) all.push_back({number + "\r", true, true});
  return all;
}

void edit(Operator& op, const Line& line) {
  std::string shown = line[1];  // at first, then other values are
  for (const Entry& entry : entries(line[2], line[3])) {
    const int bells = op.bells();
    op.open(line[0]);
    EXPECT_TRUE(op.shows(shown)) << shown << " is not on\n" << op.screen();
    shown.clear();
    op.type(entry.keys);
    if (entry.refused) op.expect("The value is out of range");
    if (entry.number) {
      EXPECT_EQ(op.bells() - bells, entry.refused ? 1 : 0) << readable(entry.keys);
    }
    EXPECT_TRUE(op.shows(line[5])) << line[5] << " is not on\n" << op.screen();
    while (!op.shows("Harrier 5")) op.leave();
  }
}

class Fields : public testing::TestWithParam<Table> {};

// What one run of the program edits is saved at its end, and the files are compared whole.
TEST_P(Fields, AreEditedAndSaved) {
  const std::vector<Line>& lines = GetParam().lines;
  for (auto line = lines.begin(); line != lines.end();) {
    Folder::Files expected = demo_with((*line)[0] == "set" ? (*line++)[1] : "");
    const Folder folder(expected);
    Operator op(folder, {.environment = {{"TZ", "UTC"}}});
    bool changed = false;
    for (; line != lines.end() && (*line)[0] != "set"; ++line) {
      SCOPED_TRACE("line " + std::to_string(line->number));
      edit(op, *line);
      put_values(expected, (*line)[4]);
      changed = changed || !(*line)[4].empty();
    }
    SCOPED_TRACE("before line " + std::to_string(line == lines.end() ? 0 : line->number));
    EXPECT_EQ(op.quit(changed ? "y" : ""), changed ? 1 : 0);
    for (const auto& [name, bytes] : folder.files()) EXPECT_EQ(bytes, expected[name]) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(All, Fields, testing::ValuesIn(read_tables("fields.txt")),
                         [](const auto& table) { return case_name(table.param); });
INSTANTIATE_TEST_SUITE_P(Odd, Fields, testing::ValuesIn(read_tables("odd_edits.txt")),
                         [](const auto& table) { return case_name(table.param); });

}  // namespace
