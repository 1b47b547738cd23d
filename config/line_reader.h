#pragma once

#include <cstddef>

/// Reads a text file line by line, as the files of the service are read: through a fixed buffer,
/// without allocation. A read error ends the file.
class LineReader {
 public:
  /// Opens `path`; `opened` tells whether that worked.
  explicit LineReader(const char* path);
  ~LineReader();
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  bool opened() const { return fd_ >= 0; }

  /// Takes the next line, of at most `limit` characters with its line feed; a longer line comes in
  /// pieces. `line` must have room for `limit + 1` bytes and is terminated; a NUL byte in the file
  /// ends the text, and what follows it up to the line end is lost. False at the end of the file.
  /// `length` becomes the length of the text.
  bool next(char* line, std::size_t limit, std::size_t& length);

 private:
  bool refill();

  int fd_;
  bool ended_ = false;
  bool has_nul_ = false;  // without one, no line has to be searched for its end
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  char buffer_[16384];
};
