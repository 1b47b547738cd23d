#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>

#include "tests/tables.h"

namespace {

/// Whether the lines let a file include another: those for its folder and for the file itself.
bool permit(const Table& table, const std::string& file, const std::string& include) {
  return std::any_of(table.lines.begin(), table.lines.end(), [&](const Line& line) {
    return file.starts_with(line[0]) &&
           std::any_of(line.cells.begin() + 1, line.cells.end(), [&](const std::string& name) {
             return name.ends_with('/') ? include.starts_with(name) : include == name;
           });
  });
}

TEST(Includes, PointOneWay) {
  static const std::regex directive("#include \"(.*)\"");
  const std::vector<Table> tables = read_tables("includes.txt");
  for (const Line& folder : tables[1].lines) {
    for (const auto& entry : std::filesystem::directory_iterator(source_dir() + "/" + folder[0])) {
      const std::string name = folder[0] + entry.path().filename().string();
      const std::string text = read_file(entry.path());
      for (std::sregex_iterator at(text.begin(), text.end(), directive), end; at != end; ++at) {
        EXPECT_TRUE(permit(tables[name.ends_with(".h") ? 1 : 0], name, (*at)[1]))
            << name << " includes " << (*at)[1];
      }
    }
  }
}

}  // namespace
