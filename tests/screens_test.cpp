#include <gtest/gtest.h>

#include "tests/arrow_path.h"
#include "tests/tables.h"

namespace {

/// The screen with the colours of each row before it, in their order from left to right.
std::string with_colours(Operator& op) {
  const std::pair<Look, char> letters[] = {{white, 'w'}, {dim_white, 'd'}, {cyan, 'c'},
                                           {green, 'g'}, {red, 'r'},       {dim_red, 'x'}};
  std::string screen;
  for (int row = 1; row <= 24; ++row) {
    std::string text;
    std::string colours;
    for (int col = 1; col <= 80; ++col) {
      const Cell cell = op.cell(row, col);
      text += cell.text;
      if (cell.text == " ") continue;
      char letter = '?';
      for (const auto& [look, name] : letters) {
        if (look == cell.look) letter = name;
      }
      if (!colours.ends_with(letter)) colours += letter;
    }
    colours.resize(std::max<std::size_t>(colours.size(), 3), ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    screen.append(colours).append("|").append(text).append("\n");
  }
  screen.erase(screen.find_last_not_of(" |\n") + 1);
  return screen + "\n";
}

class Screens : public testing::TestWithParam<Table> {};

TEST_P(Screens, AreShownAndLeadTheArrow) {
  for (const Line& line : GetParam().lines) {
    const std::string &settings = line[0], &path = line[1], &arrow = line[2], &name = line[3];
    SCOPED_TRACE("arrow_paths.txt, line " + std::to_string(line.number));
    const Folder folder(demo_with(settings));
    Operator op(folder, {.environment = {{"TZ", "UTC"}}});
    op.open(path);
    if (!name.empty()) {
      EXPECT_EQ(with_colours(op), read_file(source_dir() + "/tests/data/screens/" + name + ".txt"));
    }
    if (!arrow.empty()) {
      EXPECT_EQ(arrow_path(op, op.arrow()), arrow);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(All, Screens, testing::ValuesIn(read_tables("arrow_paths.txt")),
                         [](const auto& table) { return case_name(table.param); });

}  // namespace
