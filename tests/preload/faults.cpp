// Loaded before the C library: makes one file operation of a save fail, or ends the program there.
//
// Operations are counted from the first on that opens kestrel.ini for writing; those on standard
// streams do not count. Number FAULT_AT does what FAULT_KIND says: "kill" ends the program by
// SIGKILL, "term" sends SIGTERM and goes on, a number is the errno to fail with. A write that fails
// or is killed has written half of its bytes. Nothing is flushed to the disk. FAULT_COUNT names a
// file that gets the number of operations at the end.

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string_view>

namespace {

int count = -1;  // operations so far, -1 before the first that counts

const char* setting(const char* name) {
  const char* value = getenv(name);
  return value != nullptr ? value : "";
}

/// Counts an operation. False, with the errno, if it has to fail; `half` does what a call has done
/// when it is cut off.
bool passes(const std::function<void()>& half = [] {}) {
  if (count < 0 || ++count != std::atoi(setting("FAULT_AT"))) return true;
  const std::string_view kind = setting("FAULT_KIND");
  if (kind == "term") {
    raise(SIGTERM);
    return true;
  }
  half();
  if (kind == "kill") raise(SIGKILL);
  errno = std::atoi(kind.data());
  return false;
}

/// The function of the library. Arguments and results are passed in registers, so one type fits
/// all.
template <typename... Args>
long call(const char* name, Args... args) {
  return reinterpret_cast<long (*)(Args...)>(dlsym(RTLD_NEXT, name))(args...);
}

bool standard(long fd) { return static_cast<int>(fd) <= STDERR_FILENO; }

[[gnu::destructor]] void report_count() {
  std::FILE* file = std::fopen(setting("FAULT_COUNT"), "w");
  if (file == nullptr) return;
  std::fprintf(file, "%d", count);
  std::fclose(file);
}

}  // namespace

/// Defines a function under its name in the library, where it is declared with other types.
#define FUNCTION(name, ...)                                  \
  extern "C" long faulty_##name(__VA_ARGS__) __asm__(#name); \
  extern "C" long faulty_##name(__VA_ARGS__)
#define ON_PATH(name) \
  FUNCTION(name, long a, long b, long c, long d) { return passes() ? call(#name, a, b, c, d) : -1; }
#define ON_FILE(name)                                                \
  FUNCTION(name, long fd, long b, long c, long d) {                  \
    return standard(fd) || passes() ? call(#name, fd, b, c, d) : -1; \
  }

FUNCTION(open, const char* path, long flags, long mode) {
  const bool writing = (flags & O_ACCMODE) != O_RDONLY;
  if (count < 0 && writing && std::string_view(path).ends_with("kestrel.ini")) count = 0;
  return passes() ? call("open", path, flags, mode) : -1;
}

ON_PATH(mkostemp)
ON_PATH(readlink)
ON_PATH(rename)
ON_PATH(unlink)
ON_FILE(fchmod)
ON_FILE(fchown)
ON_FILE(fstat)
ON_FILE(ftruncate)
ON_FILE(lseek)
ON_FILE(read)

FUNCTION(write, long fd, const char* bytes, long size) {
  const auto half = [&] { call("write", fd, bytes, size / 2); };
  return standard(fd) || passes(half) ? call("write", fd, bytes, size) : -1;
}

FUNCTION(close, long fd) {  // which closes even where it fails
  const bool closes = standard(fd) || passes([&] { call("close", fd); });
  return closes ? call("close", fd) : -1;
}

FUNCTION(fsync, long) { return passes() ? 0 : -1; }
FUNCTION(sync) { return 0; }
