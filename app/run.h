#pragma once

/// One editing run. `program` is the path of the program, `argv[0]`. Loads the configuration and
/// the texts from the program's folder, runs the main menu, and asks whether to save the changes.
/// Returns the exit status: 1 when the operator agreed to save, 0 when nothing was saved, 2 when
/// the main configuration file cannot be loaded, 4 when there is no memory for the texts, 5 when
/// the language file cannot be loaded.
int run(const char* program);
