#pragma once

#include <string>
#include <string_view>

/// Checks a configuration. Every function clears the `findings` of an earlier one, adds its own and
/// sorts them. None changes a file.

/// Checks all files of the service in a folder, as the editor would load them. Findings call the
/// files as `shown` followed by their names. Returns 0, or the errno of what kept the folder from
/// being looked at; ENOENT also when it holds no file of the service.
int check_folder(const std::string& folder, const std::string& shown);

/// Checks the file `path` alone, as the file `name` of the service ("kestrel.ini", "group_03.ini",
/// "lang_00.ini"), or as a group profile ("profile"). The path "-" is standard input; a pipe is
/// read to its end. Returns 0, EINVAL for a name that no file of the service has, or the errno of
/// what kept the file from being read (EISDIR for a folder).
int check_file(const std::string& path, std::string_view name, const std::string& shown);
