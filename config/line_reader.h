#pragma once

#include <sys/stat.h>

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

  /// 0, or the errno of what kept the file from being opened or read to its end. After
  /// `identify`, a pipe has no end to read to (ESPIPE), and a device none that comes soon (EFBIG).
  int error() const { return error_; }

  /// What the file is, as fstat says it; all zero when it is not open. Saves the call that would
  /// look for the end of a regular file once all of its bytes have been read.
  struct stat identify();

  /// Reads the next line into `line`, which must have room for `limit + 1` bytes and is terminated.
  /// A line longer than `limit` characters, line feed included, comes in pieces. A NUL byte in the
  /// file ends the text, and the rest of its piece is lost. `length` becomes the length of the
  /// text. Returns false at the end of the file.
  bool next(char* line, std::size_t limit, std::size_t& length);

  /// About the piece that `next` read last: its bytes (more than `length` when one is NUL), the
  /// number of its line, from 1 on, and whether the line began with an earlier piece.
  std::size_t piece_size() const { return piece_size_; }
  int line() const { return line_; }
  bool continues() const { return continues_; }

 private:
  bool refill();

  int fd_;
  int error_ = 0;
  bool ended_ = false;
  bool device_ = false;
  off_t left_ = -1;       // bytes that are still to come, -1 when nobody knows
  bool has_nul_ = false;  // without a NUL byte no line has to be searched for its end
  std::size_t piece_size_ = 0;
  int line_ = 0;
  bool continues_ = false;
  bool line_ended_ = true;
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  char buffer_[16384];
};
