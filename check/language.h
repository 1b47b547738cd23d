#pragma once

#include <string>
#include <string_view>

/// Whether this is the name of a language file, lang_00.ini to lang_31.ini.
bool is_language_name(std::string_view name);

/// Checks a language file alone: what Harrier does not read from it. Findings call it `shown`.
/// Returns 0, or the errno of what kept it from being read.
int check_language(const std::string& path, const std::string& shown);
