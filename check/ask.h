#pragma once

#include <string>

/// Shows the findings of lines that a save would drop, move or misread, at most ten of them with
/// the errors first, and asks whether to edit all the same. Without such findings, does nothing.
/// `command` shows all findings. Returns false when the input ends at the question. Ctrl-C ends the
/// program, as anywhere.
bool ask_before_edit(const std::string& command);
