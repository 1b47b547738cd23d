#pragma once

#include <string>
#include <vector>

#include "tools/language_file.h"

/// The check of a language file. It finds what the program does not read, and texts that do not fit
/// their place on the screen.

/// Checks the file at `path` and fills `findings` in the order of the lines. The name of the file
/// must be lang_00.ini to lang_31.ini. Compares the texts with the other languages in the folder of
/// the file. Returns 0 when the file was checked; EINVAL for another name; ENAMETOOLONG for a
/// folder whose path is too long for the program; ENOMEM; or the errno of opening the file. Loads
/// the texts of the file, and sets `ProgramDir` to its folder.
int check_language(const std::string& path, std::vector<Finding>& findings);
