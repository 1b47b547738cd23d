#pragma once

#include <string>

/// Shows the findings of lines that a save would drop, move or misread, at most ten of them, and
/// asks whether to edit all the same. Without such findings, does nothing. `folder` is what the
/// operator calls the folder that was checked. Returns false when the input ends at the question.
/// Ctrl-C ends the program, as anywhere.
bool ask_before_edit(const std::string& folder);
