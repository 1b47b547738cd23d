#pragma once

#include <string>
#include <string_view>
#include <vector>

/// The one place where files are replaced, as one unit.
///
/// Whoever reads a file meanwhile, and whoever finds it after a loss of power, sees the old
/// contents or the new ones, whole: the new file is written beside the old one under a temporary
/// name, flushed to the disk and renamed over it (POSIX rename is atomic). Owner, group,
/// permissions, access control list and extended attributes stay those of the old file; a symbolic
/// link stays a link. A file whose contents would not change is not touched, but it must be
/// writable all the same.
///
/// A file that cannot be swapped, or not without losing something, is written in place: it has
/// further hard links, is no regular file, is a mount point, lies in a folder without write
/// permission, belongs to somebody whom we may not give a file, or has attributes that cannot be
/// copied. If that fails, its old contents are put back.
///
/// A file that somebody else has changed since it was read (`config/known_files.h`) stays beside
/// the new one under a name with the present time.

/// How a file of a unit is replaced.
struct Replacement {
  /// Files of a lower rank are on the disk before one of a higher rank changes.
  int rank = 0;
  /// The files before this one are on the disk before it changes.
  bool ordered = false;
  /// The name gets a new regular file, whatever it was before, a link included.
  bool anew = false;
  /// A file that did not exist gets owner, group and permissions of this file. Without a model the
  /// umask decides.
  std::string model = {};
};

/// Files that are replaced together. First every file is staged: it is written under its temporary
/// name and flushed. Then all are swapped in one burst and the folders are flushed.
class FileUnit {
 public:
  FileUnit();
  ~FileUnit();  // drops what has not been swapped
  FileUnit(const FileUnit&) = delete;
  FileUnit& operator=(const FileUnit&) = delete;

  /// What the files that are staged from here on belong to, for `swap`.
  void begin(int owner) { owner_ = owner; }

  /// Stages a file. Returns 0 or errno; then nothing of that file is staged, even if it was before.
  int stage(const std::string& path, std::string_view contents, const Replacement& how);

  /// Stages the deletion of a file. A file that is missing, or that may not be deleted, is no
  /// error.
  void stage_deletion(const std::string& path, int rank);

  /// Whether `stage` failed because something could not be written (no space, quota, size limit,
  /// I/O), rather than because a file could not be opened or created.
  bool write_failed() const { return write_failed_; }

  /// Swaps everything that is staged. Returns 0, or the errno of what failed; `owner` says whose
  /// file that was. A file that cannot be written in place leaves all files as they were. After any
  /// other failure the files before it are new and the files after it are old.
  int swap(int& owner);

  /// A sentence for each file that somebody else had changed, for the operator.
  const std::vector<std::string>& kept() const { return kept_; }

 private:
  struct Staged;

  static int open_old(Staged& file);
  static void read_before(Staged& file);
  int stage_swap(Staged& file, std::string_view contents);
  void drop(const std::string& path);
  int give_up(const std::string& path, int error);
  static bool is_foreign(const Staged& file);
  int keep(const Staged& file);
  int keep_foreign(int& owner);
  void note_change(const std::string& target);
  static int put(Staged& file);
  int apply(Staged& file);
  int overwrite_all(int& owner);
  int flush_folders();

  std::vector<Staged> staged_;
  std::vector<std::string> folders_;  // with changes that are not flushed
  std::vector<std::string> kept_;
  int owner_ = 0;
  bool write_failed_ = false;
};

/// Creates the file `path`, which nobody but its owner may read, and flushes it. Returns 0 or errno
/// (EEXIST for a file that exists); then no such file is left.
int create_file(const std::string& path, std::string_view contents);

/// Flushes the folder that holds the file `path` (the folder's entries, not the files in it) to the
/// disk. Returns 0 or errno.
int sync_folder(const std::string& path);

/// Replaces `path` by the name that its symbolic links lead to, even if no file has that name.
/// Returns 0 or errno.
int follow_links(std::string& path);
