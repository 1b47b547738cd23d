// The functions here take the place of the library's in the whole program of the tests, and are no
// different until a case wants a fault.

#include "tests/failing_calls.h"

#include <dlfcn.h>

#include <cerrno>
#include <csignal>

namespace {

bool counting = false;
int count;
int faulty;
int fault;

/// Counts an operation. False, with the errno, if it has to fail; `half` does what a call has done
/// when it is cut off.
bool passes(const std::function<void()>& half = [] {}) {
  if (!counting || ++count != faulty) return true;
  if (fault == -SIGTERM) return raise(SIGTERM) == 0;
  half();
  if (fault == -SIGKILL) raise(SIGKILL);
  errno = fault;
  return false;
}

/// The function of the library. Arguments and results are passed in registers, so one type fits
/// all.
template <typename... Args>
long call(const char* name, Args... args) {
  return reinterpret_cast<long (*)(Args...)>(dlsym(RTLD_NEXT, name))(args...);
}

}  // namespace

int with_fault(int at, int kind, const std::function<void()>& work) {
  count = 0;
  faulty = at;
  fault = kind;
  counting = true;
  work();
  counting = false;
  return count;
}

/// Defines a function under its name in the library, where it is declared with other types.
#define FUNCTION(name, ...)                                  \
  extern "C" long faulty_##name(__VA_ARGS__) __asm__(#name); \
  extern "C" long faulty_##name(__VA_ARGS__)
#define SIMPLE_FUNCTION(name) \
  FUNCTION(name, long a, long b, long c, long d) { return passes() ? call(#name, a, b, c, d) : -1; }

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
  return passes(half) ? call("write", fd, bytes, size) : -1;
}

FUNCTION(sync) { return counting ? 0 : call("sync"); }  // it would flush all disks
