#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cctype>
#include <sstream>
#include <string>
#include <vector>

#include "tests/operator.h"
#include "tests/tables.h"
#include "tui/columns.h"

namespace {

/// Any number of blanks counts as one, so that a value follows its label, a title its border.
std::string squeezed(const std::string& text) {
  std::string result;
  for (const char c : text) {
    const char shown = c == '\n' ? ' ' : c;
    if (shown != ' ' || !result.ends_with(' ')) result += shown;
  }
  return result;
}

/// The terminal of the tour is larger than a screen may be.
constexpr int screen_rows = 24;
constexpr int screen_columns = 80;
constexpr int frame_columns = 70;

void expect_fits(Operator& op) {
  const std::string screen = op.screen();
  std::istringstream lines(screen);
  int row = 0;
  for (std::string line; std::getline(lines, line); ++row) {
    EXPECT_LE(columns(line), screen_columns) << screen;
    const bool rule = !line.empty() && line.find_first_not_of('-') == std::string::npos;
    if (rule || line.starts_with("****")) {
      EXPECT_EQ(columns(line), frame_columns) << screen;
    }
  }
  EXPECT_LE(row, screen_rows) << screen;
}

void pick(Operator& op, const std::string& item) {
  if (std::isdigit(static_cast<unsigned char>(item[0])) != 0) return op.choose(item);
  int row = 1;
  while (row < screen_rows && op.row(row).find(item) == std::string::npos) ++row;
  op.point(row);
  op.enter();
}

/// Chooses "1/7/2" or types what stands behind a quotation mark.
void act(Operator& op, const std::string& what) {
  if (what[0] == '"') {
    op.type(what.substr(1) + "\r");
    return expect_fits(op);
  }
  std::istringstream items(what);
  for (std::string item; std::getline(items, item, '/');) {
    pick(op, item);
    expect_fits(op);
  }
}

void go_home(Operator& op) {
  while (!op.shows("Harrier 5.3.0")) op.leave();
  expect_fits(op);
}

void expect_shown(Operator& op, const std::string& text) {
  const std::string screen = op.screen();
  EXPECT_NE(squeezed(screen).find(text), std::string::npos) << text << " is not on\n" << screen;
}

std::vector<Line> read_tour() {
  std::vector<Line> tour;
  for (const Table& table : read_tables("tour.txt")) {
    tour.insert(tour.end(), table.lines.begin(), table.lines.end());
  }
  return tour;
}

TEST(Tour, ChangesSomethingOnEveryScreenAndFindsItAgain) {
  const Folder folder;
  // The language that is chosen on the way must not change what is found later.
  const std::string english = folder.read("lang_00.ini");
  folder.write("lang_02.ini", "Tour English" + english.substr(english.find('\n')));
  folder.write("vi", "#!/bin/sh\necho \"exit 0\" > \"$1\"\n");
  chmod(folder.path("vi").c_str(), 0755);
  const Options large{.rows = 30, .cols = 90, .environment = {{"TZ", "UTC"}}};
  std::string stored;

  Operator op(folder, large);
  for (const Line& line : read_tour()) {
    SCOPED_TRACE("tour.txt, line " + std::to_string(line.number));
    go_home(op);
    act(op, line[0]);
    for (std::size_t i = 1; i < line.cells.size(); ++i) {
      if (line[i][0] == '=') {
        stored += line[i].substr(1) + ";";
      } else if (i % 2 == 0) {
        act(op, line[i]);
      } else {
        expect_shown(op, line[i]);
      }
    }
  }
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.read("ups_shut.scr"), "exit 0\n");
  for (const Value& v : read_values(stored)) {
    EXPECT_EQ(folder.value(v.file, v.section, v.key), v.text) << v.file << " " << v.key;
  }

  // Once more in the same language, and in the other one for the sake of its longer texts.
  for (const char* language : {"2", "1"}) {
    folder.set("kestrel.ini", "System", "Language", language);
    Operator again(folder, large);
    for (const Line& line : read_tour()) {
      SCOPED_TRACE("tour.txt, line " + std::to_string(line.number));
      go_home(again);
      act(again, line[0]);
      const std::size_t last = line.cells.size() - 1;
      if (language[0] == '2') expect_shown(again, line[line[last][0] == '=' ? last - 1 : last]);
    }
  }
}

}  // namespace
