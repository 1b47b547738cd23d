#include "config/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace {

/// Neither a terminal nor a pipe in the place of a file keeps the program waiting.
constexpr int open_flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

/// A file descriptor that is closed at the end of its block.
class Descriptor {
 public:
  explicit Descriptor(int number) : fd(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  /// Closes early and returns 0 or errno. Some errors are only reported on closing (NFS does so).
  int close() {
    const int error = fd >= 0 && ::close(fd) != 0 && errno != EINTR ? errno : 0;
    fd = -1;
    return error;
  }

  int fd;
};

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

/// Appends everything in the file to `contents`. Returns 0 or errno; the position is at the end.
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

int write_from_start(int fd, std::string_view contents, bool regular) {
  if (regular && lseek(fd, 0, SEEK_SET) != 0) return errno;
  int error = write_all(fd, contents);
  if (error == 0 && regular && ftruncate(fd, static_cast<off_t>(contents.size())) != 0) {
    error = errno;
  }
  return error == 0 ? flush(fd) : error;
}

/// Writes over the file `path`, which is open for writing as `old`. Puts its old contents back if
/// that fails.
int overwrite(const std::string& path, Descriptor& old, bool regular, std::string_view contents) {
  // A file that may be written but not read is written too, without a way back.
  Descriptor source(regular ? open(path.c_str(), O_RDONLY | open_flags) : -1);
  std::string before;
  const bool known = source.fd >= 0 && read_all(source.fd, before) == 0;

  int error = write_from_start(old.fd, contents, regular);
  if (error != 0 && known) write_from_start(old.fd, before, regular);
  const int close_error = old.close();
  return error != 0 ? error : close_error;
}

/// Replaces `path` by the name that its symbolic links lead to. That file need not exist. Returns 0
/// or errno.
int follow_links(std::string& path) {
  char link[PATH_MAX];
  for (;;) {  // the file could be opened, so the links come to an end
    const ssize_t length = readlink(path.c_str(), link, sizeof link);
    if (length < 0) return errno == EINVAL || errno == ENOENT ? 0 : errno;
    // A relative link counts from its own folder. Without a slash `rfind` returns -1.
    path.erase(link[0] == '/' ? 0 : path.rfind('/') + 1);
    path.append(link, static_cast<std::size_t>(length));
  }
}

/// Sets owner and permissions of a fresh file to those of the old file. When `old` is null, the
/// permissions become those of any new file.
int take_over(int fd, const struct stat* old) {
  mode_t mode = 0;
  if (old == nullptr) {
    const mode_t mask = umask(0);
    umask(mask);
    mode = 0666 & ~mask;
  } else {
    // Even when the owner is the same: a folder can give its new files another group.
    if (fchown(fd, old->st_uid, old->st_gid) != 0) return errno;
    mode = old->st_mode & 07777;
  }
  return fchmod(fd, mode) == 0 ? 0 : errno;
}

/// Puts a new file in the place of `path`. Returns 0 or errno; after an error nothing has changed.
int swap(const std::string& path, const struct stat* old, std::string_view contents) {
  std::string name = path + ".XXXXXX";
  Descriptor fresh(mkostemp(name.data(), O_CLOEXEC));
  if (fresh.fd < 0) return errno;
  int error = take_over(fresh.fd, old);
  if (error == 0) error = write_all(fresh.fd, contents);
  if (error == 0) error = flush(fresh.fd);
  const int close_error = fresh.close();
  if (error == 0) error = close_error;
  if (error == 0 && rename(name.c_str(), path.c_str()) != 0) error = errno;
  if (error != 0) unlink(name.c_str());
  return error;
}

/// Whether swapping failed for a reason that does not keep us from writing in place: the folder is
/// not ours or read-only, we cannot give a file to its owner, or the file is a mount point.
bool cannot_swap(int error) {
  return error == EACCES || error == EPERM || error == EROFS || error == EBUSY ||
         error == ENAMETOOLONG;
}

}  // namespace

int replace_file(const std::string& path, std::string_view contents) {
  // Opening for writing fails exactly when the file may not be written, and harms nothing.
  Descriptor old(open(path.c_str(), O_WRONLY | open_flags));
  if (old.fd < 0 && errno != ENOENT) return errno;
  const bool exists = old.fd >= 0;
  struct stat info = {};
  if (exists && fstat(old.fd, &info) != 0) return errno;
  const bool regular = S_ISREG(info.st_mode);
  if (exists && (!regular || info.st_nlink != 1)) return overwrite(path, old, regular, contents);

  std::string target = path;
  int error = follow_links(target);
  if (error != 0) return error;
  error = swap(target, exists ? &info : nullptr, contents);
  if (exists && cannot_swap(error)) return overwrite(path, old, regular, contents);
  return error != 0 || target == path ? error : sync_folder(target);
}

int sync_folder(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string name = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  Descriptor folder(open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.fd < 0) {
    if (errno != EACCES) return errno;
    sync();  // a folder that may be used but not listed cannot be flushed on its own
    return 0;
  }
  const int error = flush(folder.fd);
  const int close_error = folder.close();
  return error != 0 ? error : close_error;
}
