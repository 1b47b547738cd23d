#pragma once

#include <unistd.h>

#include <cerrno>
#include <utility>

/// A file descriptor that is closed with its owner; -1 for none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : fd(number) {}
  Descriptor(Descriptor&& other) noexcept : fd(std::exchange(other.fd, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(fd, other.fd);
    return *this;
  }
  ~Descriptor() { close(); }

  /// Closes early and returns 0 or errno. Some errors are only reported on closing (NFS does so).
  int close() {
    const int error = fd >= 0 && ::close(fd) != 0 && errno != EINTR ? errno : 0;
    fd = -1;
    return error;
  }

  int fd = -1;
};
