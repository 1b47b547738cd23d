#include "config/line_reader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

// With O_NONBLOCK a named pipe without a writer does not stop the start of the program forever.
LineReader::LineReader(const char* path)
    : fd_(open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK)) {
  if (fd_ < 0) error_ = errno;
}

LineReader::~LineReader() {
  if (fd_ >= 0) close(fd_);
}

struct stat LineReader::identify() {
  struct stat info = {};
  if (fd_ >= 0 && fstat(fd_, &info) != 0) error_ = errno;
  constexpr off_t most_of_a_device = 65536;  // which may have no end
  if (S_ISREG(info.st_mode) && info.st_size > 0) left_ = info.st_size;
  device_ = S_ISCHR(info.st_mode);
  if (device_) left_ = most_of_a_device;
  if (S_ISFIFO(info.st_mode)) error_ = ESPIPE;
  return info;
}

bool LineReader::refill() {
  if (ended_ || left_ == 0) return false;
  ssize_t got;
  do {
    got = read(fd_, buffer_, sizeof buffer_);
  } while (got < 0 && errno == EINTR);
  if (got < 0) error_ = errno;
  if (got > 0 && left_ > 0) left_ -= std::min<off_t>(left_, got);
  if (got > 0 && left_ == 0 && device_) error_ = EFBIG;
  at_ = 0;
  end_ = got > 0 ? static_cast<std::size_t>(got) : 0;
  ended_ = end_ == 0;
  has_nul_ = has_nul_ || std::memchr(buffer_, '\0', end_) != nullptr;
  return !ended_;
}

bool LineReader::next(char* line, std::size_t limit, std::size_t& length) {
  std::size_t used = 0;
  bool complete = false;
  while (!complete && used < limit) {
    if (at_ == end_ && !refill()) break;
    const std::size_t room = std::min(limit - used, end_ - at_);
    // Copies up to the line feed, which is included.
    const void* after = memccpy(line + used, buffer_ + at_, '\n', room);
    complete = after != nullptr;
    const std::size_t taken =
        complete ? static_cast<std::size_t>(static_cast<const char*>(after) - (line + used)) : room;
    used += taken;
    at_ += taken;
  }
  line[used] = '\0';
  piece_size_ = used;
  continues_ = !line_ended_;
  if (line_ended_) ++line_;
  line_ended_ = complete;
  length = has_nul_ ? std::strlen(line) : used;
  return used != 0;
}
