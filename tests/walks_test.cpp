#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sstream>
#include <utility>

#include "tests/golden.h"
#include "tests/walk.h"

namespace {

class Tables : public testing::TestWithParam<Table> {
 protected:
  const std::vector<Line>& lines() const { return GetParam().lines; }
};

auto tables(const char* file) { return testing::ValuesIn(read_tables(file)); }

class Walks : public Tables {};

TEST_P(Walks, GoAsWritten) {
  Walk walk;
  for (const Line& line : lines()) walk.go(line);
  walk.finish();
}

INSTANTIATE_TEST_SUITE_P(All, Walks, tables("walks.txt"), table_name);

class Commands : public Tables {};

TEST_P(Commands, DoAsWritten) {
  Folder::Files files = demo_with("");
  files["probe"] = "#!/bin/sh\nexec " + built_program("harrier_probe") + " \"$@\"\n";
  files["check_language"] = "#!/bin/sh\nexec " + built_program("check_language") + " \"$@\"\n";
  // Called by the path of the script, so that it lies in the folder.
  files["harrier-check"] =
      "#!/bin/bash\nexec -a \"$0\" " + built_program("harrier-check") + " \"$@\"\n";
  for (const Line& line : lines()) {
    SCOPED_TRACE("commands.txt, line " + std::to_string(line.number));
    files["command"] =
        "#!/bin/sh\nPATH=$PATH:/usr/bin source=" HARRIER_SOURCE_DIR "\n" + line[0] + "\n";
    ASSERT_GT(line.cells.size(), 1U) << "nothing is expected";
    Walk walk(files, {.name = "./command"});
    for (std::size_t i = 1; i < line.cells.size(); ++i) walk.take(line[i]);
  }
}

INSTANTIATE_TEST_SUITE_P(All, Commands, tables("commands.txt"), table_name);

class Screens : public Tables {};

TEST_P(Screens, AreShownAndLeadTheArrow) {
  for (const Line& line : lines()) {
    SCOPED_TRACE("arrow_paths.txt, line " + std::to_string(line.number));
    Walk walk(demo_with(line[0]));
    walk.take(line[1]);
    if (!line[3].empty()) walk.take("screen " + line[3]);
    if (!line[2].empty()) walk.take("arrow " + line[2]);
  }
}

INSTANTIATE_TEST_SUITE_P(All, Screens, tables("arrow_paths.txt"), table_name);

// Drawing removes the golden files that no row names any more.
TEST(Screens, AreInUse) {
  const std::string data = source_dir() + "/tests/data/";
  const std::string tables = read_file(data + "walks.txt") + read_file(data + "commands.txt") +
                             read_file(data + "arrow_paths.txt");
  for (const std::string& folder : {data + "screens", source_dir() + "/docs/pictures"}) {
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      const std::regex cell("(screen|\\|) " + file.path().stem().string() + "( \\||\n)");
      const bool used = std::regex_search(tables, cell);
      if (!used && drawing()) std::filesystem::remove(file);
      EXPECT_TRUE(used || drawing()) << file << ": no row names it";
    }
  }
}

/// Where numbers are refused, all numbers are typed one after the other.
void edit(Walk& walk, const Line& line) {
  std::string shown = line[1];                                   // at first, then other values are
  const auto enter = [&](const std::string& typed, int bells) {  // -1 for any number of them
    const int before = walk.op().bells();
    walk.go_home();
    walk.take(line[0]);
    walk.take(std::exchange(shown, ""));
    if (!typed.empty()) walk.take('"' + typed);
    if (bells == 1) walk.take("$out_of_range");
    EXPECT_TRUE(bells < 0 || walk.op().bells() - before == bells) << typed;
    for (std::size_t i = 5; i < line.cells.size(); ++i) walk.take(line[i]);
  };
  std::string number;
  if (line[3].empty()) enter(line[2], -1);
  std::istringstream taken(line[3].empty() ? "" : line[2]);
  std::istringstream refused(line[3]);
  while (taken >> number) enter(number, 0);
  while (refused >> number) enter(number, 1);
  walk.keep(line[4], true);
}

class Fields : public Tables {};

// What one run of the program edits is saved at its end, and the files are compared whole.
TEST_P(Fields, AreEditedAndSaved) {
  Walk walk;
  for (const Line& line : lines()) {
    SCOPED_TRACE("line " + std::to_string(line.number));
    line[0] == "set" ? walk.go(line) : edit(walk, line);
  }
  walk.finish();
}

INSTANTIATE_TEST_SUITE_P(All, Fields, tables("fields.txt"), table_name);
INSTANTIATE_TEST_SUITE_P(Odd, Fields, tables("odd_edits.txt"), table_name);

TEST(Tour, ChangesSomethingOnEveryScreenAndFindsItAgain) {
  std::vector<Line> tour;
  for (const Table& table : read_tables("tour.txt")) {
    tour.insert(tour.end(), table.lines.begin(), table.lines.end());
  }
  // The language that is chosen on the way must not change what is found later.
  Folder::Files files = demo_with("");
  const std::string texts = read_file(source_dir() + "/languages/lang_00.ini");
  // Its texts begin with bytes that a terminal might obey, and none of them is shown.
  const std::string hidden = "\x1b\x9b\x85\u202e\u2066\x7f";
  files["lang_02.ini"] = "Tour English" + std::regex_replace(texts.substr(texts.find('\n')),
                                                             std::regex("=\""), "=\"" + hidden);

  Walk walk(files, {.rows = 30, .cols = 90});
  for (const Line& line : tour) walk.go(line);
  walk.finish();

  // Once more in the same language, and in the other one for the sake of its longer texts.
  for (const char* language : {"2", "1"}) {
    const std::string before = walk.folder().read("kestrel.ini");
    walk.folder().write("kestrel.ini", with_value(before, "System", "Language", language));
    walk.run();
    for (const Line& line : tour) {
      SCOPED_TRACE("tour.txt, line " + std::to_string(line.number));
      walk.go_home();
      walk.take(line[0]);
      const std::size_t last = line.cells.size() - 1;
      if (language[0] == '2') walk.take(line[line[last][0] == '=' ? last - 1 : last]);
    }
    for (const char* part : {"\x9b\x85", "\u202e", "\u2066"}) {
      EXPECT_EQ(walk.op().output().find(part), std::string::npos);
    }
  }
}

}  // namespace
