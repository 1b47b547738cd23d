#pragma once

#include "tests/operator.h"

/// Takes the settled screen and compares it with tests/data/screens/NAME.txt. If
/// docs/pictures/NAME.svg exists, compares that as well. While drawing, writes both files instead.
///
/// A line of the text file holds the looks of a row, "|", and its characters. "w26 c11" means 26
/// white cells, then 11 in cyan. A blank counts with the characters after it.
void expect_screen(Operator& op, const std::string& name);

/// Compares a text with a file, whose path is absolute. While drawing, writes the file instead.
void expect_drawn(const std::string& file, const std::string& drawn);

/// Returns whether golden files are to be written: HARRIER_DRAW is in the environment.
bool drawing();
