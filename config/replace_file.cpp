#include "config/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <new>

#include "config/attributes.h"
#include "config/descriptor.h"
#include "config/known_files.h"

namespace {

/// Neither a terminal nor a pipe in the place of a file keeps the program waiting.
constexpr int open_flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

// --- Contents -----------------------------------------------------------------------------------

int write_all(int fd, std::string_view contents) {
  while (!contents.empty()) {
    const ssize_t written = write(fd, contents.data(), contents.size());
    if (written > 0) {
      contents.remove_prefix(static_cast<std::size_t>(written));
    } else if (written == 0) {
      return EIO;  // otherwise the loop would never end
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

int flush(int fd) {
  if (fsync(fd) == 0) return 0;
  return errno == EINVAL || errno == EROFS ? 0 : errno;  // a device or pipe cannot be flushed
}

/// Appends everything in the file to `contents`. Returns 0 or errno.
int read_all(int fd, std::string& contents) {
  char part[16384];
  for (;;) {
    const ssize_t got = read(fd, part, sizeof part);
    if (got == 0) return 0;
    if (got > 0) {
      contents.append(part, static_cast<std::size_t>(got));
    } else if (errno != EINTR) {
      return errno;
    }
  }
}

/// Writes everything, flushes and closes. Returns 0 or errno.
int write_out(Descriptor& file, std::string_view contents) {
  int error = write_all(file.fd, contents);
  if (error == 0) error = flush(file.fd);
  const int close_error = file.close();
  return error != 0 ? error : close_error;
}

int write_from_start(int fd, std::string_view contents, bool regular) {
  if (regular && lseek(fd, 0, SEEK_SET) != 0) return errno;
  int error = write_all(fd, contents);
  if (error == 0 && regular && ftruncate(fd, static_cast<off_t>(contents.size())) != 0) {
    error = errno;
  }
  return error == 0 ? flush(fd) : error;
}

/// Copies a file with its attributes to a new name. Returns 0 or errno.
int copy_file(const std::string& path, const std::string& name) {
  const Descriptor source(open(path.c_str(), O_RDONLY | open_flags));
  struct stat info = {};
  std::string contents;
  if (source.fd < 0 || fstat(source.fd, &info) != 0) return errno;
  int error = read_all(source.fd, contents);
  if (error != 0) return error;
  error = create_file(name, contents);
  const Descriptor copy(open(name.c_str(), O_RDONLY | open_flags));
  if (error == 0) take_over_attributes(copy.fd, source.fd, info);  // as far as possible
  return error;
}

// --- Names --------------------------------------------------------------------------------------

std::string folder_of(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

std::string name_of(const std::string& path) { return path.substr(path.rfind('/') + 1); }

bool same_file(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// `path` with the present time at its end, as ".20261121-170501", under which there is no file.
std::string dated(const std::string& path) {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  localtime_r(&now, &local);
  char date[32];
  std::strftime(date, sizeof date, ".%Y%m%d-%H%M%S", &local);
  std::string name = path + date;
  for (int more = 2; access(name.c_str(), F_OK) == 0; ++more) {
    name = path + date + "-" + std::to_string(more);
  }
  return name;
}

// --- Kinds of failures --------------------------------------------------------------------------

/// Whether a file that may be written may yet not be swapped.
bool cannot_swap(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == EINVAL ||
         error == ENOSYS || error == EOPNOTSUPP || error == ENAMETOOLONG || error == ERANGE ||
         error == E2BIG;
}

/// Whether the disk, not a file, is in the way.
bool no_room(int error) {
  return error == ENOSPC || error == EDQUOT || error == EIO || error == EFBIG;
}

/// Whether a file that may not be deleted just stays.
bool may_stay(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY || error == ENOENT ||
         error == EISDIR;
}

}  // namespace

struct FileUnit::Staged {
  std::string path;       // the name that was asked for
  std::string target;     // the name that its links lead to
  std::string temporary;  // of the new file; empty for a file that is deleted or written in place
  std::string contents;   // to be written in place
  std::string before;     // what was there
  bool known = false;     // `before` was read
  Descriptor old;         // the old file, if there was one
  struct stat info = {};  // of `old`
  Replacement how = {};
  int owner = 0;
  bool again = false;    // another file of the unit has the same name and comes before
  bool foreign = false;  // somebody else has changed the file since it was read
  bool stays = false;    // the file cannot be deleted
  bool deleted = false;

  bool existed() const { return old.fd >= 0; }
  bool regular() const { return S_ISREG(info.st_mode); }
};

FileUnit::FileUnit() {
  constexpr std::size_t most_files = 32;
  // Once a file has been staged, a lack of memory must not lose it.
  staged_.reserve(most_files);
}

FileUnit::~FileUnit() {
  for (const Staged& file : staged_) {
    if (!file.temporary.empty()) unlink(file.temporary.c_str());
  }
}

// --- Staging ------------------------------------------------------------------------------------

/// Opens the old file and finds the name that its links lead to. Somebody who may write the folder
/// could exchange file and link between the two steps. The new file would then get the owner of one
/// file and the place of the other. So both are compared, and another attempt follows.
int FileUnit::open_old(Staged& file) {
  // Opening for writing fails exactly where the file may not be written, and harms nothing.
  const int access = file.how.anew ? O_RDONLY | O_NOFOLLOW : O_WRONLY;
  for (int attempt = 0; attempt < 10; ++attempt) {
    file.target = file.path;
    file.old = Descriptor(open(file.path.c_str(), access | open_flags));
    if (!file.existed() && errno != ENOENT && !file.how.anew) return errno;
    if (file.existed() && fstat(file.old.fd, &file.info) != 0) return errno;
    if (file.how.anew) return S_ISDIR(file.info.st_mode) ? EISDIR : 0;
    const int error = follow_links(file.target);
    struct stat found = {};
    if (error != 0 || !file.existed()) return error;
    if (lstat(file.target.c_str(), &found) == 0 && same_file(found, file.info)) return 0;
  }
  return EBUSY;
}

/// Reads the old contents, if that is possible.
void FileUnit::read_before(Staged& file) {
  if (file.known || !file.existed() || !file.regular()) return;
  const Descriptor source(open(file.path.c_str(), O_RDONLY | open_flags));
  struct stat info = {};
  file.known = source.fd >= 0 && fstat(source.fd, &info) == 0 && same_file(info, file.info) &&
               read_all(source.fd, file.before) == 0;
}

/// Writes and flushes the new file under a temporary name. After an error no such file is left.
int FileUnit::stage_swap(Staged& file, std::string_view contents) {
  std::string name = file.target + ".XXXXXX";
  Descriptor fresh(mkostemp(name.data(), O_CLOEXEC));
  if (fresh.fd < 0) return errno;
  const bool takes_over = file.existed() && !file.how.anew;
  const bool has_model = !takes_over && !file.how.model.empty();
  const Descriptor model(has_model ? open(file.how.model.c_str(), O_RDONLY | open_flags) : -1);
  int error = 0;
  try {
    error = takes_over ? take_over_attributes(fresh.fd, file.old.fd, file.info)
                       : take_model_attributes(fresh.fd, model.fd);
  } catch (const std::bad_alloc&) {
    error = ENOMEM;
  }
  if (error == 0) {
    error = write_out(fresh, contents);
    write_failed_ = error != 0;
  }
  if (error == 0)
    file.temporary = std::move(name);
  else
    unlink(name.c_str());
  return error;
}

/// Takes the versions of a file that have been staged out of the unit.
void FileUnit::drop(const std::string& path) {
  std::erase_if(staged_, [&](const Staged& file) {
    if (file.path != path) return false;
    if (!file.temporary.empty()) unlink(file.temporary.c_str());
    return true;
  });
}

int FileUnit::give_up(const std::string& path, int error) {
  write_failed_ = write_failed_ || no_room(error);
  drop(path);
  return error;
}

int FileUnit::stage(const std::string& path, std::string_view contents, const Replacement& how) {
  Staged file;
  file.path = path;
  file.how = how;
  file.owner = owner_;
  const auto earlier = std::find_if(staged_.begin(), staged_.end(),
                                    [&](const Staged& other) { return other.path == path; });
  file.again = earlier != staged_.end();
  struct stat found = {};
  file.foreign = stat(path.c_str(), &found) == 0 && changed_since_read(path, found);
  int error = open_old(file);
  if (error != 0) return give_up(path, error);
  if (static_cast<std::size_t>(file.info.st_size) == contents.size()) read_before(file);
  if (file.known && file.before == contents && !file.again) return 0;

  const bool in_place =
      file.existed() && !how.anew &&
      (!file.regular() || file.info.st_nlink != 1 || (file.again && earlier->temporary.empty()));
  if (!in_place) {
    error = stage_swap(file, contents);
    if (error != 0 && how.anew && cannot_swap(error)) {
      // The old name cannot be removed either, so the file that it leads to is written.
      Replacement followed = how;
      followed.anew = false;
      return stage(path, contents, followed);
    }
    if (error != 0 && (write_failed_ || !file.existed() || !cannot_swap(error))) {
      return give_up(path, error);
    }
  }
  if (file.temporary.empty()) {
    // Written at the start of the swap, so no earlier version may come after it.
    drop(path);
    file.again = false;
    read_before(file);
    file.contents = contents;
  }
  staged_.push_back(std::move(file));
  return 0;
}

void FileUnit::stage_deletion(const std::string& path, int rank) {
  Staged file;
  file.path = file.target = path;
  file.how.rank = rank;
  file.owner = owner_;
  struct stat found = {};
  file.foreign = stat(path.c_str(), &found) == 0 && changed_since_read(path, found);
  file.deleted = true;
  staged_.push_back(std::move(file));
}

// --- Swapping -----------------------------------------------------------------------------------

/// Whether the file is not the one that was read. Opening it for writing may change its times (an
/// overlay copies it), so what was found before that counts, and later the bytes only.
bool FileUnit::is_foreign(const Staged& file) {
  struct stat now = {};
  if (file.again || lstat(file.target.c_str(), &now) != 0 || !S_ISREG(now.st_mode)) return false;
  const bool appeared = !file.existed() && !file.how.anew && !file.deleted;
  const bool changed = file.existed() && (now.st_size != file.info.st_size ||
                                          now.st_mtim.tv_sec != file.info.st_mtim.tv_sec ||
                                          now.st_mtim.tv_nsec != file.info.st_mtim.tv_nsec);
  return file.foreign || (is_known(file.path) && (appeared || changed));
}

/// Keeps a file that somebody else has changed. Returns 0 or errno.
int FileUnit::keep(const Staged& file) {
  const std::string name = dated(file.target);
  const bool in_place = file.temporary.empty() && !file.deleted;
  if (in_place || link(file.target.c_str(), name.c_str()) != 0) {
    // Some file systems have no further names. A file in place would change under both names.
    const int error = copy_file(file.target, name);
    if (error != 0) return error;
  }
  kept_.push_back(name_of(file.path) + " was changed by somebody else meanwhile: kept as " +
                  name_of(name));
  note_change(file.target);
  return 0;
}

/// Keeps all files that somebody else has changed, before the first one is replaced.
int FileUnit::keep_foreign(int& owner) {
  for (Staged& file : staged_) {
    owner = file.owner;
    file.foreign = is_foreign(file);
    const int error = file.foreign ? keep(file) : 0;
    // A file that may not be deleted stays anyway.
    file.stays = file.deleted && error != 0 && may_stay(error);
    if (error != 0 && !file.stays) return error;
  }
  return kept_.empty() ? 0 : flush_folders();
}

/// Notes that the folder of a file has to be flushed.
void FileUnit::note_change(const std::string& target) {
  const std::string folder = folder_of(target);
  if (std::find(folders_.begin(), folders_.end(), folder) == folders_.end()) {
    folders_.push_back(folder);
  }
}

/// Puts the new file in the place of the old one.
int FileUnit::put(Staged& file) {
  struct stat now = {};
  const bool there = lstat(file.target.c_str(), &now) == 0;
  if (!there && errno != ENOENT) return errno;
  const bool is_old = there && file.existed() && same_file(now, file.info);
  // The new file has the owner and permissions of the file that was opened. This is another file.
  if (there && file.existed() && !is_old && !file.how.anew && !file.again) return EBUSY;
  if (rename(file.temporary.c_str(), file.target.c_str()) == 0) {
    file.temporary.clear();
    return 0;
  }
  int error = errno;
  // Writing in place would change a kept file under its other name.
  if (!is_old || file.how.anew || file.foreign || !cannot_swap(error)) return error;
  // A mount point, for instance, shows itself only now.
  const Descriptor fresh(open(file.temporary.c_str(), O_RDONLY | open_flags));
  if (fresh.fd < 0) return errno;
  error = read_all(fresh.fd, file.contents);
  read_before(file);
  if (error == 0) error = write_from_start(file.old.fd, file.contents, file.regular());
  if (error != 0 && file.known) write_from_start(file.old.fd, file.before, true);
  return error;
}

/// Swaps or deletes one file.
int FileUnit::apply(Staged& file) {
  const int error = file.deleted ? 0 : put(file);
  if (error != 0) return error;
  if (file.deleted && unlink(file.target.c_str()) != 0) return may_stay(errno) ? 0 : errno;
  note_written(file.path);
  note_change(file.target);
  return 0;
}

int FileUnit::flush_folders() {
  int error = 0;
  for (const std::string& folder : folders_) {
    const int folder_error = sync_folder(folder);
    if (error == 0) error = folder_error;
  }
  folders_.clear();
  return error;
}

/// Writes the files that cannot be swapped. After an error all have their old contents again.
int FileUnit::overwrite_all(int& owner) {
  for (std::size_t i = 0; i < staged_.size(); ++i) {
    Staged& file = staged_[i];
    if (file.deleted || !file.temporary.empty()) continue;
    owner = file.owner;
    const int error = write_from_start(file.old.fd, file.contents, file.regular());
    if (error == 0) {
      note_written(file.path);
      continue;
    }
    // A file that may be written but not read has no way back.
    for (std::size_t back = i + 1; back-- > 0;) {
      const Staged& written = staged_[back];
      const bool in_place = !written.deleted && written.temporary.empty();
      if (in_place && written.known) write_from_start(written.old.fd, written.before, true);
    }
    return error;
  }
  return 0;
}

int FileUnit::swap(int& owner) {
  std::stable_sort(staged_.begin(), staged_.end(),
                   [](const Staged& a, const Staged& b) { return a.how.rank < b.how.rank; });
  int error = keep_foreign(owner);
  if (error == 0) error = overwrite_all(owner);
  int rank = staged_.empty() ? 0 : staged_.front().how.rank;
  for (std::size_t i = 0; error == 0 && i < staged_.size(); ++i) {
    Staged& file = staged_[i];
    owner = file.owner;
    if (file.how.ordered || file.how.rank != rank) error = flush_folders();
    rank = file.how.rank;
    const bool in_place = !file.deleted && file.temporary.empty();
    if (error == 0 && !in_place && !file.stays) error = apply(file);
  }
  const int flush_error = flush_folders();
  return error != 0 ? error : flush_error;
}

int create_file(const std::string& path, std::string_view contents) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | open_flags, 0600));
  if (file.fd < 0) return errno;
  const int error = write_out(file, contents);
  if (error != 0) unlink(path.c_str());
  return error;
}

int follow_links(std::string& path) {
  char link[PATH_MAX];
  for (int count = 0; count < 40; ++count) {  // more than Linux follows
    const ssize_t length = readlink(path.c_str(), link, sizeof link);
    if (length < 0) return errno == EINVAL || errno == ENOENT ? 0 : errno;
    // What a link says counts from its own folder; `rfind` is -1 for a path without one.
    path.erase(link[0] == '/' ? 0 : path.rfind('/') + 1);
    path.append(link, static_cast<std::size_t>(length));
  }
  return ELOOP;
}

int sync_folder(const std::string& path) {
  const std::string folder = folder_of(path);
  const Descriptor file(
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (file.fd < 0) {
    if (errno != EACCES) return errno;
    sync();  // a folder that may be used but not listed cannot be flushed on its own
    return 0;
  }
  return flush(file.fd);
}
