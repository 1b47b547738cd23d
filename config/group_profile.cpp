#include "config/group_profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "config/families.h"
#include "config/replace_file.h"
#include "config/service_files.h"
#include "config/signals_held.h"
#include "tui/diag.h"

void (*record_listener)(int number, std::size_t size) = nullptr;

namespace {

constexpr char not_opened[] = "\nCannot open file! ";
constexpr char not_read[] = "\nRecord not readed - maybe end of file ! ";
constexpr char too_many[] = "\nRecords is more that MAX_GROUP_EVENTS! ";
constexpr char not_written[] = "\nRecord not writed - maybe disk full ! ";

/// Neither a pipe without another end nor a device without data keeps the program waiting.
constexpr int open_flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

int fail_to_open(int error) {
  printfc(not_opened);
  return error;
}

/// Reads a record. Returns how many of its bytes were there.
std::size_t read_record(int file, GroupEvent& event) {
  char* const bytes = reinterpret_cast<char*>(&event);
  std::size_t filled = 0;
  while (filled < sizeof event) {
    const ssize_t got = read(file, bytes + filled, sizeof event - filled);
    if (got > 0) {
      filled += static_cast<std::size_t>(got);
    } else if (got == 0 || errno != EINTR) {
      break;
    }
  }
  return filled;
}

void read_records(int file, GroupEvent (&events)[event_count]) {
  const bool foreign_order = test_big_endian() != 0;
  int number = 0;
  for (GroupEvent& event : events) {
    const std::size_t size = read_record(file, event);
    if (record_listener != nullptr) record_listener(number++, size);
    if (size != sizeof event) {
      std::memset(&event, 0, sizeof event);
      printfc(not_read);
      return;
    }
    if (foreign_order) swap_event_data(event);
  }
  printfc(too_many);
}

/// Returns the contents of a profile. The events themselves keep the order of this machine.
std::string format_profile(GroupEvent (&events)[event_count]) {
  const bool foreign_order = test_big_endian() != 0;
  std::string out;
  for (GroupEvent& event : events) {
    if (event.Type[0] == 0) continue;
    GroupEvent stored = event;
    if (foreign_order) swap_event_data(stored);
    out.append(reinterpret_cast<const char*>(&stored), sizeof stored);
  }
  return out;
}

}  // namespace

int LoadGroupProfile(const char* path, GroupEvent (&events)[event_count]) {
  const int file = open(path, O_RDONLY | open_flags);
  if (file < 0) return fail_to_open(errno);
  struct stat info;
  if (fstat(file, &info) == 0 && S_ISDIR(info.st_mode)) {
    close(file);
    return fail_to_open(EISDIR);
  }
  std::memset(events, 0, sizeof events);
  read_records(file, events);
  close(file);
  return 0;
}

int SaveGroupProfile(const char* path, GroupEvent (&events)[event_count]) {
  const SignalsHeld held;
  if (is_service_file(path)) return fail_to_open(EPERM);
  FileUnit unit;
  int error = unit.stage(path, format_profile(events), {});
  if (error != 0 && !unit.write_failed()) return fail_to_open(error);
  int owner;
  if (error == 0) error = unit.swap(owner);
  if (error != 0) printfc(not_written);
  return error;
}

int test_big_endian() {
  constexpr std::uint16_t number = 0x1020;
  unsigned char first;
  std::memcpy(&first, &number, 1);
  return first == 0x10 ? 1 : 0;
}

std::uint16_t swap_word(std::uint16_t value) {
  return static_cast<std::uint16_t>(value << 8 | value >> 8);
}

void swap_event_data(GroupEvent& event) {
  for (const Field& field : families_of(group_file)[group_events].fields) {
    if (field.kind == Kind::text) continue;
    const auto number = static_cast<std::uint16_t>(number_at(field, &event));
    set_number_at(field, &event, swap_word(number));
  }
}
