#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

#include "tests/tables.h"

namespace {

/// Rows with an empty first cell belong to the case before them.
struct Case {
  int line;
  std::string commands;
  std::string findings;
};

std::vector<Case> read_cases(const Table& table) {
  std::vector<Case> cases;
  for (const Line& line : table.lines) {
    if (!line[0].empty()) cases.push_back({line.number, line[0], ""});
    if (!line[1].empty()) cases.back().findings += keys(line[1]) + "\n";
  }
  return cases;
}

class Check : public testing::TestWithParam<Table> {};

TEST_P(Check, SaysWhatIsWrong) {
  for (const Case& c : read_cases(GetParam())) {
    SCOPED_TRACE("findings.txt, line " + std::to_string(c.line));
    const Folder folder;
    folder.write("commands",
                 c.commands + "\n" + built_program("harrier-check") + " --quiet \"$@\" >printed\n");
    const int status = std::system(("cd " + folder.path() + " && bash -eu commands").c_str());
    EXPECT_EQ(folder.read("printed"), c.findings);
    EXPECT_EQ(WEXITSTATUS(status), c.findings.find(": error: ") == std::string::npos ? 0 : 1);
  }
}

INSTANTIATE_TEST_SUITE_P(Findings, Check, testing::ValuesIn(read_tables("findings.txt")),
                         [](const auto& table) {
                           std::string name = table.param.name;
                           std::erase(name, ' ');
                           return name;
                         });

}  // namespace
