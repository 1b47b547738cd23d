#pragma once

#include <string>
#include <string_view>

/// Replaces the contents of the file `path`, or creates it. A reader sees the old contents or the
/// new ones, whole, even after a loss of power. The new file is written beside the old file under a
/// temporary name, flushed to the disk and renamed over it (POSIX rename is atomic). Owner, group
/// and permissions stay those of the old file. A symbolic link stays a link.
///
/// Some files cannot be swapped, or would lose something. They have more than one hard link, are
/// not regular, are mount points, lie in a folder without write permission, or belong to somebody
/// to whom we may not give a file. They are written in place; if that fails, their old contents are
/// put back.
///
/// Returns 0, or the errno of the step that failed. After an error the old contents stand and no
/// temporary file is left. Does not flush the folder of `path`: call `sync_folder` when all files
/// have been replaced. (When a symbolic link leads elsewhere, the folder there is flushed.)
int replace_file(const std::string& path, std::string_view contents);

/// Flushes the folder that holds the file `path` to the disk: the names in it, not the contents of
/// its files. Returns 0 or errno.
int sync_folder(const std::string& path);
