#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "config/descriptor.h"

/// Files that are checked alone, made readable for the readers of the editor. These open a path and
/// accept neither pipes nor standard input.

/// A file without a name, kept in memory. It disappears with the object.
class MemoryFile {
 public:
  MemoryFile();

  /// Appends bytes. Returns 0 or errno.
  int append(std::string_view bytes) const;

  /// Where the file can be opened and read from its start.
  std::string path() const;

  /// 0, or the errno of what kept the file from being created.
  int error() const { return error_; }

 private:
  Descriptor file_;
  int error_ = 0;
};

/// The file that an operator names.
class Input {
 public:
  /// Reads all of a pipe or a device, up to 4 MiB, and waits for its end. "-" is standard input. A
  /// regular file is not read here.
  explicit Input(const std::string& name);

  /// Where the file can be opened and read from its start, as long as this object lives.
  const std::string& path() const { return path_; }

  /// 0, or the errno of what kept the file from being opened or read: EISDIR for a folder, EFBIG
  /// for a pipe or a device that holds more.
  int error() const { return error_; }

 private:
  int copy(int file);

  std::string path_;
  std::optional<MemoryFile> memory_;
  int error_ = 0;
};
