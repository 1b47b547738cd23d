#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>

#include "tests/operator.h"

/// One edit and what it leaves in kestrel.ini.
struct Edit {
  const char* path;   // from the main menu
  std::string typed;  // on the screen that opens there; nothing for a toggle
  const char* section;
  const char* key;
  std::string saved;
};

/// Makes all edits in one run, saves, and expects that every value is in the file.
inline void expect_saved(const Folder& folder, std::span<const Edit> edits) {
  Operator op(folder);
  for (const Edit& e : edits) {
    const std::string path = e.path;
    op.open(path);
    op.type(e.typed);
    for (auto level = std::count(path.begin(), path.end(), '/'); level > 0; --level) op.leave();
  }
  EXPECT_EQ(op.quit("y"), 1);
  for (const Edit& e : edits) {
    EXPECT_EQ(folder.value("kestrel.ini", e.section, e.key), e.saved) << e.path << " " << e.key;
  }
}
