#pragma once

#include <cstddef>

/// One editing run from the path of the program, `argv[0]`: loads the configuration and the texts
/// from the program's folder, runs the main menu, and asks whether to save what has changed.
/// Returns the exit status: 1 when the operator agreed to save, 0 when nothing was saved, 2 when
/// the main configuration file cannot be loaded, 4 without memory for the texts, 5 when the
/// language file cannot be loaded.
int run(const char* program);

/// Fills `dir` with the folder part of `path` and a slash: "./" for a bare name. Too long a path is
/// cut to `size` bytes with its terminator.
void getprgdir(const char* path, char* dir, std::size_t size);
