#include "check/input.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace {

/// Far more than the largest file of the service.
constexpr std::size_t most = std::size_t{4} << 20;

}  // namespace

MemoryFile::MemoryFile() : file_(memfd_create("harrier-check", MFD_CLOEXEC)) {
  if (file_.fd < 0) error_ = errno;
}

int MemoryFile::append(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = write(file_.fd, bytes.data(), bytes.size());
    if (written > 0)
      bytes.remove_prefix(static_cast<std::size_t>(written));
    else if (written == 0 || errno != EINTR)
      return written == 0 ? EIO : errno;
  }
  return 0;
}

std::string MemoryFile::path() const { return "/proc/self/fd/" + std::to_string(file_.fd); }

Input::Input(const std::string& name) : path_(name) {
  if (name == "-") {
    error_ = copy(STDIN_FILENO);
    return;
  }
  const Descriptor file(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  struct stat info = {};
  if (file.fd < 0 || fstat(file.fd, &info) != 0)
    error_ = errno;
  else if (S_ISDIR(info.st_mode))
    error_ = EISDIR;
  else if (!S_ISREG(info.st_mode))
    error_ = copy(file.fd);
}

/// Returns 0 or errno.
int Input::copy(int file) {
  memory_.emplace();
  if (memory_->error() != 0) return memory_->error();
  path_ = memory_->path();
  char part[16384];
  for (std::size_t size = 0; size <= most;) {
    const ssize_t got = read(file, part, sizeof part);
    if (got == 0) return access(path_.c_str(), R_OK) == 0 ? 0 : errno;  // without /proc it cannot
    if (got < 0 && errno != EINTR) return errno;
    if (got < 0) continue;
    size += static_cast<std::size_t>(got);
    const int error = memory_->append({part, static_cast<std::size_t>(got)});
    if (error != 0) return error;
  }
  return EFBIG;
}
