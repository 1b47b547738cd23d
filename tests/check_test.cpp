#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

#include "check/classes.h"
#include "tests/golden.h"
#include "tests/tables.h"

namespace {

/// What commands print.
std::string printed(const Folder& folder, const std::string& commands) {
  folder.run("exec >printed 2>/dev/null\n" + commands);
  return folder.read("printed");
}

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
    const int status = folder.run(c.commands + "\n./harrier-check --quiet \"$@\" >printed");
    EXPECT_EQ(folder.read("printed"), c.findings);
    EXPECT_EQ(status, c.findings.find(": error: ") == std::string::npos ? 0 : 1);
  }
}

INSTANTIATE_TEST_SUITE_P(Findings, Check, testing::ValuesIn(read_tables("findings.txt")),
                         table_name);

class CheckCommand : public testing::TestWithParam<Table> {};

TEST_P(CheckCommand, DoesAsWritten) {
  for (const Line& line : GetParam().lines) {
    SCOPED_TRACE(GetParam().name + ", line " + std::to_string(line.number));
    const Folder folder;
    std::string out;
    std::string err;
    for (std::size_t i = 2; i < line.cells.size(); ++i) {
      const bool is_error = line[i].starts_with("2> ");
      (is_error ? err : out) += keys(line[i].substr(is_error ? 3 : 0)) + "\n";
    }
    EXPECT_EQ(folder.run("exec >printed 2>said\n" + line[0]), std::stoi(line[1]));
    EXPECT_EQ(folder.read("printed"), out);
    EXPECT_EQ(folder.read("said"), err);
  }
}

INSTANTIATE_TEST_SUITE_P(All, CheckCommand, testing::ValuesIn(read_tables("check_commands.txt")),
                         table_name);
INSTANTIATE_TEST_SUITE_P(Languages, CheckCommand,
                         testing::ValuesIn(read_tables("languages_commands.txt")), table_name);

/// Every byte as a key, as a value, and as a section.
std::string hostile_lines() {
  std::string lines;
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    lines += replaced("@=@\n[System]\nName=\"@\"\n[@]\n", {{"@", text}});
  }
  return lines;
}

TEST(Json, SaysTheSameAsTheText) {
  const Folder folder;
  folder.write("sensor.ini", hostile_lines());
  folder.write("kestrel.ini", folder.read("kestrel.ini") + hostile_lines());
  const auto json = nlohmann::json::parse(printed(folder, "harrier-check --format=json"));
  std::string lines;
  std::map<std::string, int> counts = {{"error", 0}, {"warning", 0}, {"note", 0}};
  for (const auto& finding : json["findings"]) {
    std::ostringstream line;
    line << finding["file"].get<std::string>() << ":" << finding["line"] << ": "
         << finding["level"].get<std::string>() << ": " << finding["message"].get<std::string>()
         << " [" << finding["class"].get<std::string>() << "]\n";
    lines += line.str();
    ++counts[finding["level"]];
  }
  EXPECT_EQ(lines, printed(folder, "harrier-check"));
  EXPECT_EQ(json["counts"], nlohmann::json(counts));
  EXPECT_EQ(json["folder"], ".");
  EXPECT_EQ(json["version"], HARRIER_VERSION);
  EXPECT_GT(json["findings"].size(), 1000u);
}

/// The page about the command with the classes of the program in its tables.
std::string with_classes(const std::string& page) {
  std::istringstream lines(page);
  std::string whole;
  std::string group;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("#")) group = line.substr(line.find(' ') + 1);
    const bool drawn =
        std::any_of(class_rows().begin(), class_rows().end(),
                    [&](const ClassRow& row) { return name_of(row.group) == group; });
    if (drawn && line.starts_with("| `")) continue;
    whole += line + "\n";
    if (!drawn || !line.starts_with("|---")) continue;
    for (const ClassRow& row : class_rows()) {
      if (name_of(row.group) != group) continue;
      whole.append("| `").append(name_of(row)).append("` | ").append(name_of(row.level));
      whole.append(" | ").append(row.explanation).append(" |\n");
    }
  }
  return whole;
}

TEST(Classes, AreDescribed) {
  const std::string page = source_dir() + "/docs/check.md";
  expect_drawn(page, with_classes(read_file(page)));
}

}  // namespace
