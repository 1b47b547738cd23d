#pragma once

#include <string>

#include "tests/operator.h"

/// Moves the arrow of a screen down as far as it goes, and up again, and returns the items it has
/// stood on: "1 2 4 2 1". Items are counted from the one on `first_row`.
inline std::string arrow_path(Operator& op, int first_row) {
  int row = op.arrow();
  std::string path = std::to_string(row - first_row + 1);
  for (const bool down : {true, false}) {
    for (;;) {
      down ? op.down() : op.up();
      if (op.arrow() == row) break;
      row = op.arrow();
      path += " " + std::to_string(row - first_row + 1);
    }
  }
  return path;
}
