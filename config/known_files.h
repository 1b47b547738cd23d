#pragma once

#include <sys/stat.h>

#include <string>

/// What the files of the configuration were when they were last read or written. A save compares
/// them with what they are then.

/// Notes the file `path` as it was read. `error` is the errno of what kept it from being opened or
/// read to its end: ENOENT for a file that is missing, 0 for none. `info` counts only for 0.
void note_read(const std::string& path, int error, const struct stat& info);

/// Notes a known file again after this program has written or deleted it.
void note_written(const std::string& path);

/// The errno for which `path` could not be read, 0 for a file that was read or is missing. Such a
/// file may hold settings that the record does not, so nobody may replace or delete it.
int read_error(const std::string& path);

/// Whether `path` was noted in this run.
bool is_known(const std::string& path);

/// Whether `path` is another file than the one that was noted, or has been written since. `now` is
/// its present state. False for a file that was not noted.
bool changed_since_read(const std::string& path, const struct stat& now);
