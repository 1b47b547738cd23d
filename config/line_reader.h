#pragma once

#include <cstddef>

/// Reads a text file line by line through a fixed buffer, without allocation. A read error counts
/// as the end of the file.
class LineReader {
 public:
  /// Opens `path`; `opened` says whether that worked.
  explicit LineReader(const char* path);
  ~LineReader();
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  bool opened() const { return fd_ >= 0; }

  /// Reads the next line into `line`, which must have room for `limit + 1` bytes and is terminated.
  /// A line longer than `limit` characters, line feed included, comes in pieces. A NUL byte in the
  /// file ends the text, and the rest of its piece is lost. `length` becomes the length of the
  /// text. Returns false at the end of the file.
  bool next(char* line, std::size_t limit, std::size_t& length);

 private:
  bool refill();

  int fd_;
  bool ended_ = false;
  bool has_nul_ = false;  // without a NUL byte no line has to be searched for its end
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  char buffer_[16384];
};
