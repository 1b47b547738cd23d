#include "config/replace_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

/// A file descriptor that is closed at the end of its block.
class Descriptor {
 public:
  explicit Descriptor(int number) : fd(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  /// Closes early, for callers who want to know of errors that only closing reports (NFS does).
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
      return EIO;  // would never end otherwise
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

/// Everything in the file, or an error. Leaves the position at the end.
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

/// Writes over an existing file, and puts its old contents back if that fails.
int overwrite(const std::string& path, std::string_view contents) {
  // A readable file is wanted for the way back; a write-only one is written all the same.
  Descriptor file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
  bool readable = file.fd >= 0;
  if (!readable) file.fd = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  struct stat info;
  if (file.fd < 0 || fstat(file.fd, &info) != 0) return errno;
  const bool regular = S_ISREG(info.st_mode);
  std::string before;
  if (regular && readable) readable = read_all(file.fd, before) == 0;

  int error = write_from_start(file.fd, contents, regular);
  if (error != 0 && regular && readable) write_from_start(file.fd, before, true);
  const int close_error = file.close();
  return error != 0 ? error : close_error;
}

/// A fresh file in the place that `name` will give it, with the owner and the permissions of `old`
/// (null when there is none yet). Returns 0, or an error after which nothing is left behind.
int create_beside(std::string& name, const struct stat* old, Descriptor& fresh) {
  fresh.fd = mkostemp(name.data(), O_CLOEXEC);
  if (fresh.fd < 0) return errno;
  mode_t mode = 0;
  if (old != nullptr) {
    mode = old->st_mode & 07777;
  } else {
    const mode_t mask = umask(0);
    umask(mask);
    mode = 0666 & ~mask;
  }
  const bool owned = old == nullptr || (old->st_uid == geteuid() && old->st_gid == getegid());
  if ((owned || fchown(fresh.fd, old->st_uid, old->st_gid) == 0) && fchmod(fresh.fd, mode) == 0) {
    return 0;
  }
  const int error = errno;
  unlink(name.c_str());
  return error;
}

}  // namespace

int replace_file(const std::string& path, std::string_view contents) {
  // Opening for writing fails exactly where the file may not be written, and harms nothing.
  const Descriptor old(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  const int open_error = errno;
  struct stat info;
  struct stat* existing = nullptr;
  std::string target = path;
  if (old.fd >= 0) {
    if (fstat(old.fd, &info) != 0) return errno;
    existing = &info;
    if (!S_ISREG(info.st_mode) || info.st_nlink != 1) return overwrite(path, contents);
    struct stat link;
    if (lstat(path.c_str(), &link) != 0) return errno;
    char resolved[PATH_MAX];
    if (S_ISLNK(link.st_mode)) {
      if (realpath(path.c_str(), resolved) == nullptr) return errno;
      target = resolved;
    }
  } else if (open_error != ENOENT) {
    return open_error;
  } else if (lstat(path.c_str(), &info) == 0) {
    return overwrite(path, contents);  // a link to a file that does not exist yet
  }

  std::string name = target + ".XXXXXX";
  Descriptor fresh(-1);
  int error = create_beside(name, existing, fresh);
  if (error == EACCES || error == EPERM) return overwrite(path, contents);
  if (error != 0) return error;

  error = write_all(fresh.fd, contents);
  if (error == 0) error = flush(fresh.fd);
  const int close_error = fresh.close();
  if (error == 0) error = close_error;
  if (error == 0 && rename(name.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) {
    unlink(name.c_str());
    return error;
  }
  return target == path ? 0 : sync_folder(target);
}

int sync_folder(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string name = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  Descriptor folder(open(name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.fd < 0) return errno;
  const int error = flush(folder.fd);
  const int close_error = folder.close();
  return error != 0 ? error : close_error;
}
