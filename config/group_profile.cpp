#include "config/group_profile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "config/families.h"
#include "config/replace_file.h"
#include "config/signals_held.h"
#include "tui/diag.h"

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

/// Reads a record; returns whether it was there as a whole.
bool read_record(int file, GroupEvent& event) {
  char* const bytes = reinterpret_cast<char*>(&event);
  for (std::size_t filled = 0; filled < sizeof event;) {
    const ssize_t got = read(file, bytes + filled, sizeof event - filled);
    if (got > 0) {
      filled += static_cast<std::size_t>(got);
    } else if (got == 0 || errno != EINTR) {
      return false;
    }
  }
  return true;
}

void read_records(int file, GroupEvent (&events)[event_count]) {
  const bool foreign_order = test_big_endian() != 0;
  for (GroupEvent& event : events) {
    if (!read_record(file, event)) {
      std::memset(&event, 0, sizeof event);
      printfc(not_read);
      return;
    }
    if (foreign_order) swap_event_data(event);
  }
  printfc(too_many);
}

/// Returns the contents of a profile. Where the machine needs it, the events in use are swapped in
/// place and stay so.
std::string format_profile(GroupEvent (&events)[event_count]) {
  const bool foreign_order = test_big_endian() != 0;
  std::string out;
  for (GroupEvent& event : events) {
    if (event.Type[0] == 0) continue;
    if (foreign_order) swap_event_data(event);
    out.append(reinterpret_cast<const char*>(&event), sizeof event);
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
  // Opening without truncating shows whether the file can be created, and harms no old profile.
  struct stat info;
  const bool is_new = lstat(path, &info) != 0;
  const int file = open(path, O_WRONLY | O_CREAT | open_flags, 0666);
  if (file < 0) return fail_to_open(errno);
  close(file);
  if (replace_file(path, format_profile(events)) != 0) {
    if (is_new) unlink(path);
    printfc(not_written);
  }
  sync_folder(path);
  return 0;
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
