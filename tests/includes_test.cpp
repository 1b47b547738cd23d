#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/folder.h"

namespace {

using Names = std::vector<std::string>;  // a folder ends in "/", a file does not

const Names screens = {"tui/", "config/", "lang/", "schedule/", "menus/", "ups/", "groups/"};

/// Who may include what. A row for a file stands beside the row for its folder.
const std::map<std::string, Names> allowed = {
    {"tui/", {"tui/"}},
    {"config/", {"config/", "tui/diag.h"}},
    {"config/store.cpp", {"schedule/encoding.h"}},  // the one door that leads upward
    {"lang/", {"tui/", "config/", "lang/"}},
    {"schedule/", screens},
    {"menus/", screens},
    {"ups/", screens},
    {"groups/", screens},
    {"app/", {"app/", "tui/", "config/", "lang/", "schedule/", "menus/", "ups/", "groups/"}},
};

/// A screen opens a screen, so headers of screens keep out of other folders, lest a cycle starts.
Names allowed_in_screen_header(const std::string& folder) {
  return {"tui/", "config/", "lang/", "menus/screen_kit.h", folder};
}

bool permits(const Names& names, const std::string& include) {
  return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    return name.ends_with('/') ? include.starts_with(name) : include == name;
  });
}

TEST(Includes, PointOneWay) {
  const std::string directive = "#include \"";
  for (const auto& [folder, names] : allowed) {
    if (!folder.ends_with('/')) continue;
    for (const auto& entry : std::filesystem::directory_iterator(source_dir() + "/" + folder)) {
      const std::string name = folder + entry.path().filename().string();
      const bool screen_header = names == screens && name.ends_with(".h");
      const auto door = allowed.find(name);
      std::istringstream source(read_file(entry.path()));
      for (std::string line; std::getline(source, line);) {
        if (!line.starts_with(directive)) continue;
        const std::string include =
            line.substr(directive.size(), line.rfind('"') - directive.size());
        EXPECT_TRUE(permits(screen_header ? allowed_in_screen_header(folder) : names, include) ||
                    (door != allowed.end() && permits(door->second, include)))
            << name << " includes " << include;
      }
    }
  }
}

}  // namespace
