#pragma once

#include <string>
#include <string_view>

/// Whether Harrier can load a language file of this name: lang_00.ini and so on.
bool is_language_name(std::string_view name);

/// Checks a language file alone: what Harrier does not read from it. Findings call it `shown`.
/// Returns 0, or the errno of what kept it from being read.
int check_language(const std::string& path, const std::string& shown);

/// The same, but returns ENODATA, without a finding, when no line of the file looks like the header
/// of the section.
int check_texts(const std::string& path, const std::string& shown);
