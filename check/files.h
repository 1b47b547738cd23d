#pragma once

#include <string>

/// The files of a folder, apart from what they say.

/// Returns 0 when `ProgramDir` is a folder that can be looked at and holds a file of the service,
/// otherwise errno; ENOENT also for a folder without such files.
int look_for_files();

/// Adds a finding for each file that was read and has no line. Groups without a name have their
/// own.
void check_empty_files();

/// Adds the findings of the group `files` for `ProgramDir`, of which the `sources` have been read:
/// missing and unreadable files, the language file in use, temporary files, permissions. `shown`
/// precedes the names of files.
void check_files(const std::string& shown);
