// The functions here take the place of the library's in the whole program of the tests, and are no
// different until a case wants a fault.

#include "tests/failing_calls.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <string_view>

std::string journal;

namespace {

bool counting = false;
int count;
int faulty;
int fault;

/// The function of the library. Arguments and results are passed in registers, so one type fits
/// all.
template <typename... Args>
long call(const char* name, Args... args) {
  return reinterpret_cast<long (*)(Args...)>(dlsym(RTLD_NEXT, name))(args...);
}

/// Notes what the order of a save depends on.
void note(std::string_view name, long file) {
  struct stat info = {};
  if (name == "fsync" && call("fstat", file, &info) == 0 && S_ISDIR(info.st_mode)) name = "folder";
  for (const std::string_view noted : {"write", "fsync", "folder", "rename", "unlink"}) {
    if (name == noted) journal.append(name).append(" ");
  }
}

/// Counts an operation. False, with the errno, if it has to fail; `half` does what a call has done
/// when it is cut off.
bool passes(
    std::string_view name, long file, const std::function<void()>& half = [] {}) {
  if (!counting) return true;
  note(name, file);
  if (++count != faulty) return true;
  if (fault < 0 && fault != -SIGKILL) return raise(-fault) == 0;
  half();
  if (fault == -SIGKILL) raise(SIGKILL);
  errno = fault;
  return false;
}

}  // namespace

int with_fault(int at, int kind, const std::function<void()>& work) {
  count = 0;
  faulty = at;
  fault = kind;
  journal.clear();
  counting = true;
  work();
  counting = false;
  return count;
}

/// Defines a function under its name in the library, where it is declared with other types.
#define FUNCTION(name, ...)                                  \
  extern "C" long faulty_##name(__VA_ARGS__) __asm__(#name); \
  extern "C" long faulty_##name(__VA_ARGS__)
#define SIMPLE_FUNCTION(name)                               \
  FUNCTION(name, long a, long b, long c, long d) {          \
    return passes(#name, a) ? call(#name, a, b, c, d) : -1; \
  }

SIMPLE_FUNCTION(open)
SIMPLE_FUNCTION(close)
SIMPLE_FUNCTION(fsync)
SIMPLE_FUNCTION(mkostemp)
SIMPLE_FUNCTION(readlink)
SIMPLE_FUNCTION(rename)
SIMPLE_FUNCTION(unlink)
SIMPLE_FUNCTION(fchmod)
SIMPLE_FUNCTION(fchown)
SIMPLE_FUNCTION(fstat)
SIMPLE_FUNCTION(ftruncate)
SIMPLE_FUNCTION(lseek)
SIMPLE_FUNCTION(read)

FUNCTION(write, long fd, const char* bytes, long size) {
  const auto half = [&] { call("write", fd, bytes, size / 2); };
  return passes("write", fd, half) ? call("write", fd, bytes, size) : -1;
}

FUNCTION(sync) { return counting ? 0 : call("sync"); }  // it would flush all disks
