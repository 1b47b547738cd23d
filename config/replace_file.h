#pragma once

#include <string>
#include <string_view>

/// Replaces the contents of the file `path`, or creates it. Whoever reads it meanwhile, and whoever
/// finds it after a loss of power, sees the old contents or the new ones, whole: the new file is
/// written beside the old one under a temporary name, flushed to the disk and renamed over it
/// (POSIX rename is atomic). Owner, group and permissions stay those of the old file; a symbolic
/// link stays a link.
///
/// A file that cannot be swapped, or not without losing something (it has further hard links, is no
/// regular file, is a mount point, lies in a folder without write permission, or belongs to
/// somebody whom we may not give a file), is written in place; if that fails, its old contents are
/// put back.
///
/// Returns 0, or the errno of the step that failed; then the old contents stand and no temporary
/// file is left. The folder itself is not flushed, but for a link that leads to another one: call
/// `sync_folder` when all files have been replaced.
int replace_file(const std::string& path, std::string_view contents);

/// Flushes the folder that holds the file `path` (the folder's entries, not the files in it) to the
/// disk. Returns 0 or errno.
int sync_folder(const std::string& path);
