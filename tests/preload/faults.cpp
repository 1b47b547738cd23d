// Loaded before the C library: makes one file operation of a save fail, or ends the program there.
//
// Operations are counted from the first file on that is opened for writing under the name
// FAULT_FILE (kestrel.ini if it is not set); those on standard streams do not count. Number
// FAULT_AT does what FAULT_KIND says: "kill" ends the program by SIGKILL, "term" sends SIGTERM and
// goes on, a number is the errno to fail with. A write that fails or is killed has written half of
// its bytes. Nothing is flushed to the disk. FAULT_COUNT names a file that gets the number of
// operations at the end.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

int count = -1;  // operations so far, -1 before the first that counts

const char* setting(const char* name, const char* otherwise) {
  const char* value = getenv(name);
  return value != nullptr ? value : otherwise;
}

/// Counts an operation. Returns the errno that it has to fail with, 0 if it is to succeed; `half`
/// does what a call has done when it is cut off.
template <typename Half>
int strike(Half half) {
  if (count < 0 || ++count != std::atoi(setting("FAULT_AT", "0"))) return 0;
  const std::string_view kind = setting("FAULT_KIND", "5");
  if (kind == "term") {
    raise(SIGTERM);
    return 0;
  }
  half();
  if (kind == "kill") raise(SIGKILL);
  return std::atoi(kind.data());
}

template <typename Result, typename... Args>
Result call(const char* name, Args... args) {
  return reinterpret_cast<Result (*)(Args...)>(dlsym(RTLD_NEXT, name))(args...);
}

template <typename Result, typename... Args>
Result operation(const char* name, Args... args) {
  const int error = strike([] {});
  if (error == 0) return call<Result>(name, args...);
  errno = error;
  return -1;
}

template <typename Result, typename... Args>
Result on_file(const char* name, int fd, Args... args) {
  return fd > STDERR_FILENO ? operation<Result>(name, fd, args...)
                            : call<Result>(name, fd, args...);
}

int opening(const char* name, const char* path, int flags, mode_t mode) {
  const bool writing = (flags & O_ACCMODE) != O_RDONLY;
  if (count < 0 && writing &&
      std::string_view(path).ends_with(setting("FAULT_FILE", "kestrel.ini")))
    count = 0;
  return operation<int>(name, path, flags, mode);
}

mode_t mode_of(int flags, va_list args) {
  return (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(args, int)) : 0;
}

[[gnu::destructor]] void report_count() {
  const char* path = getenv("FAULT_COUNT");
  std::FILE* file = path != nullptr ? std::fopen(path, "w") : nullptr;
  if (file == nullptr) return;
  std::fprintf(file, "%d", count);
  std::fclose(file);
}

}  // namespace

#define OPENING(name)                          \
  int name(const char* path, int flags, ...) { \
    va_list args;                              \
    va_start(args, flags);                     \
    const mode_t mode = mode_of(flags, args);  \
    va_end(args);                              \
    return opening(#name, path, flags, mode);  \
  }
#define CHECKED_OPENING(name) \
  int name(const char* path, int flags) { return opening(#name, path, flags, 0); }

extern "C" {

// The names are those of the library.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
OPENING(open)
OPENING(open64)
CHECKED_OPENING(__open_2)
CHECKED_OPENING(__open64_2)

int mkostemp(char* name, int flags) { return operation<int>("mkostemp", name, flags); }
int mkostemp64(char* name, int flags) { return operation<int>("mkostemp64", name, flags); }
int fstat(int fd, struct stat* info) noexcept { return on_file<int>("fstat", fd, info); }
int fstat64(int fd, struct stat64* info) noexcept { return on_file<int>("fstat64", fd, info); }
int fchown(int fd, uid_t user, gid_t group) noexcept {
  return on_file<int>("fchown", fd, user, group);
}
int fchmod(int fd, mode_t mode) noexcept { return on_file<int>("fchmod", fd, mode); }
int ftruncate(int fd, off_t size) noexcept { return on_file<int>("ftruncate", fd, size); }
int ftruncate64(int fd, off64_t size) noexcept { return on_file<int>("ftruncate64", fd, size); }
off_t lseek(int fd, off_t to, int from) noexcept { return on_file<off_t>("lseek", fd, to, from); }
off64_t lseek64(int fd, off64_t to, int from) noexcept {
  return on_file<off64_t>("lseek64", fd, to, from);
}
int unlink(const char* path) noexcept { return operation<int>("unlink", path); }
int rename(const char* from, const char* to) noexcept { return operation<int>("rename", from, to); }
ssize_t readlink(const char* path, char* link, size_t size) noexcept {
  return operation<ssize_t>("readlink", path, link, size);
}
ssize_t __readlink_chk(const char* path, char* link, size_t size, size_t room) noexcept {
  return operation<ssize_t>("__readlink_chk", path, link, size, room);
}
ssize_t read(int fd, void* bytes, size_t size) { return on_file<ssize_t>("read", fd, bytes, size); }
ssize_t __read_chk(int fd, void* bytes, size_t size, size_t room) {
  return on_file<ssize_t>("__read_chk", fd, bytes, size, room);
}

ssize_t write(int fd, const void* bytes, size_t size) {
  const auto real = [&](size_t part) { return call<ssize_t>("write", fd, bytes, part); };
  errno = fd > STDERR_FILENO ? strike([&] { real(size / 2); }) : 0;
  return errno == 0 ? real(size) : -1;
}

int fsync(int) {
  errno = strike([] {});
  return errno == 0 ? 0 : -1;
}

void sync() noexcept {}

int close(int fd) {  // which closes even where it fails
  const int error = fd > STDERR_FILENO ? strike([&] { call<int>("close", fd); }) : 0;
  if (error == 0) return call<int>("close", fd);
  errno = error;
  return -1;
}
// NOLINTEND(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
}
