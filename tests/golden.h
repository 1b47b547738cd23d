#pragma once

#include "tests/operator.h"

/// Takes the settled screen and compares it with tests/data/screens/NAME.txt. If
/// docs/pictures/NAME.svg exists, compares that as well. While drawing, writes both files instead.
///
/// The text file holds a line for each row: the looks of the row, "|", and its characters. A look
/// is a letter and the number of cells: "w26 c11" means 26 white cells, then 11 in cyan. A blank
/// counts with the characters after it.
void expect_screen(Operator& op, const std::string& name);

/// Returns whether golden files are to be written: HARRIER_DRAW is in the environment.
bool drawing();
