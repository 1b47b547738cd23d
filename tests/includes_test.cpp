#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

#include "tests/tables.h"

namespace {

/// The row for a file: the one with the longest name that the file begins with.
const Line& row_for(const Table& table, const std::string& file) {
  const auto fits = [&](const Line& line) {
    return file.starts_with(line[0]) ? line[0].size() : 0;
  };
  return *std::max_element(table.lines.begin(), table.lines.end(),
                           [&](const Line& a, const Line& b) { return fits(a) < fits(b); });
}

TEST(Includes, PointOneWay) {
  static const std::regex directive("#include \"(.*)\"");
  const std::vector<Table> tables = read_tables("includes.txt");
  std::set<const std::string*> used;
  for (const Line& folder : tables[1].lines) {
    for (const auto& entry : std::filesystem::directory_iterator(source_dir() + "/" + folder[0])) {
      const std::string name = folder[0] + entry.path().filename().string();
      const Line& row = row_for(tables[name.ends_with(".cpp") ? 0 : 1], name);
      const std::string text = read_file(entry.path());
      for (std::sregex_iterator at(text.begin(), text.end(), directive), end; at != end; ++at) {
        const std::string include = (*at)[1];
        const auto permission =
            std::find_if(row.cells.begin() + 1, row.cells.end(), [&](const std::string& permitted) {
              return permitted.ends_with('/') ? include.starts_with(permitted)
                                              : include == permitted;
            });
        EXPECT_NE(permission, row.cells.end()) << name << " includes " << include;
        if (permission != row.cells.end()) used.insert(&*permission);
      }
    }
  }
  for (const Table& table : tables) {
    for (const Line& row : table.lines) {
      for (std::size_t i = 1; i < row.cells.size(); ++i) {
        EXPECT_TRUE(row[i].empty() || used.contains(&row.cells[i]))
            << "includes.txt, line " << row.number << ": nobody uses " << row[i];
      }
    }
  }
}

}  // namespace
