#pragma once

#include <string>
#include <vector>

#include "tools/language_file.h"

/// The check of a language file: what of it the program does not read, and what does not fit where
/// the program shows it.

/// Checks the file at `path`, which must be named as the program looks for it, lang_00.ini to
/// lang_31.ini, and fills `findings` in the order of the lines. Texts are compared with those of
/// the languages in the source tree. Returns 0 when the file could be checked, EINVAL for another
/// name, ENAMETOOLONG for a folder that the program could not be in, ENOMEM, or the errno of
/// opening the file. Loads the texts of the file and sets `ProgramDir` on the way.
int check_language(const std::string& path, std::vector<Finding>& findings);
