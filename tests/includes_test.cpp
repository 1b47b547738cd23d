#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

#include "tests/tables.h"

namespace {

// The first row that fits a file decides.
TEST(Includes, PointOneWay) {
  static const std::regex directive("#include \"(.*)\"");
  const std::vector<Table> tables = read_tables("includes.txt");
  std::set<const std::string*> used;
  for (const Line& folder : tables[1].lines) {
    for (const auto& entry : std::filesystem::directory_iterator(source_dir() + "/" + folder[0])) {
      const std::string name = folder[0] + entry.path().filename().string();
      const std::vector<Line>& rows = tables[name.ends_with(".cpp") ? 0 : 1].lines;
      const auto row = std::find_if(rows.begin(), rows.end(),
                                    [&](const Line& line) { return name.starts_with(line[0]); });
      ASSERT_NE(row, rows.end()) << name;
      const std::string text = read_file(entry.path());
      for (std::sregex_iterator at(text.begin(), text.end(), directive), end; at != end; ++at) {
        const auto permits = [include = at->str(1)](const std::string& permitted) {
          return !permitted.empty() && include.starts_with(permitted);
        };
        const auto permission = std::find_if(row->cells.begin() + 1, row->cells.end(), permits);
        EXPECT_NE(permission, row->cells.end()) << name << " has " << at->str();
        if (permission != row->cells.end()) used.insert(&*permission);
      }
    }
  }
  for (const Table& table : tables) {
    for (const Line& row : table.lines) {
      for (const std::string& cell : row.cells) {
        EXPECT_TRUE(&cell == &row[0] || cell.empty() || used.contains(&cell))
            << "includes.txt, line " << row.number << ": nobody uses " << cell;
      }
    }
  }
}

}  // namespace
