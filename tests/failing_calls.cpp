// The functions here take the place of the library's in the whole program of the tests, and are no
// different until a case watches them.

#include "tests/failing_calls.h"

#include <dlfcn.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <utility>

namespace {

const std::function<int(const Call&)>* watcher = nullptr;

/// The function of the library. Arguments and results are passed in registers, so one type fits
/// all.
template <typename... Args>
long call(const char* name, Args... args) {
  return reinterpret_cast<long (*)(Args...)>(dlsym(RTLD_NEXT, name))(args...);
}

std::string path_of(long fd) {
  char path[PATH_MAX];
  const std::string link = "/proc/self/fd/" + std::to_string(static_cast<int>(fd));
  const long length = static_cast<int>(call("readlink", link.c_str(), path, sizeof path));
  return length < 0 ? "" : std::string(path, static_cast<std::size_t>(length));
}

std::string path_of(const char* path) { return path; }

/// False, with the errno, if a call has to fail; `half` does what it has done when it is cut off.
template <typename File>
bool passes(
    const char* name, File file, const char* other = "", std::string_view bytes = {},
    const std::function<void()>& half = [] {}) {
  if (watcher == nullptr) return true;
  const int error = errno;  // which a call that passes leaves as it is
  const auto* const watch = std::exchange(watcher, nullptr);
  const int fault = (*watch)({name, path_of(file), other, bytes});
  watcher = watch;
  errno = error;
  if (fault == 0) return true;
  if (fault < 0 && fault != -SIGKILL) return raise(-fault) == 0;
  half();
  if (fault == -SIGKILL) raise(SIGKILL);
  errno = fault;
  return false;
}

}  // namespace

void with_calls(const std::function<int(const Call&)>& watch, const std::function<void()>& work) {
  watcher = &watch;
  work();
  watcher = nullptr;
}

int with_fault(int at, int kind, const std::function<void()>& work) {
  int count = 0;
  with_calls([&](const Call&) { return ++count == at ? kind : 0; }, work);
  return count;
}

/// Defines a function under its name in the library, where it is declared with other types.
#define FUNCTION(name, ...)                                  \
  extern "C" long faulty_##name(__VA_ARGS__) __asm__(#name); \
  extern "C" long faulty_##name(__VA_ARGS__)
/// `File` is a path or a descriptor, `failed` what the function returns after a failure.
#define SIMPLE_FUNCTION(name, File, failed)                        \
  FUNCTION(name, File a, long b, long c, long d, long e) {         \
    return passes(#name, a) ? call(#name, a, b, c, d, e) : failed; \
  }
#define TWO_PATHS(name)                                  \
  FUNCTION(name, const char* a, const char* b) {         \
    return passes(#name, a, b) ? call(#name, a, b) : -1; \
  }

#define WITH_PATH(name) SIMPLE_FUNCTION(name, const char*, -1)
#define WITH_FILE(name) SIMPLE_FUNCTION(name, long, -1)

SIMPLE_FUNCTION(mkdtemp, const char*, 0)
// clang-format off
WITH_PATH(access) WITH_PATH(lstat) WITH_PATH(mkostemp) WITH_PATH(open) WITH_PATH(readlink)
WITH_PATH(stat) WITH_PATH(unlink) TWO_PATHS(link) TWO_PATHS(rename)
WITH_FILE(close) WITH_FILE(fchmod) WITH_FILE(fchown) WITH_FILE(fgetxattr) WITH_FILE(flistxattr)
WITH_FILE(fremovexattr) WITH_FILE(fsetxattr) WITH_FILE(fstat) WITH_FILE(fsync)
WITH_FILE(ftruncate) WITH_FILE(lseek) WITH_FILE(read)
    // clang-format on

    FUNCTION(write, long fd, const char* bytes, std::size_t size) {
  const auto half = [&] { call("write", fd, bytes, size / 2); };
  return passes("write", fd, "", {bytes, size}, half) ? call("write", fd, bytes, size) : -1;
}

FUNCTION(sync) { return watcher != nullptr ? 0 : call("sync"); }  // it would flush all disks
