#include "check/profile.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "check/finding.h"
#include "check/input.h"
#include "check/reading.h"
#include "check/source.h"
#include "config/group_profile.h"
#include "config/ini_writer.h"

namespace {

int whole_records = 0;

void listen_to_record(int, std::size_t size) {
  if (size == sizeof(GroupEvent)) ++whole_records;
}

const Family& event_family() { return families_of(group_file)[group_events]; }

/// The section of an event in a group file.
std::string name_of_event(int number) {
  return SectionNames[group_file][section_number(group_file, event_family(), number)];
}

/// A record is 450 bytes, and a group has 64 events.
int check_size(const std::string& path, const std::string& shown) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return errno;
  constexpr off_t record_size = sizeof(GroupEvent);
  const auto rest = static_cast<std::size_t>(info.st_size % record_size);
  const off_t records = info.st_size / record_size;
  if (rest != 0) add_finding(Class::profile_size, shown, 1, {.before = std::to_string(rest)});
  if (records > event_count)
    add_finding(Class::profile_long, shown, 1, {.before = std::to_string(records)});
  return 0;
}

/// Events that are not in use, and those that move up into their places: a save of the profile and
/// one of the group treat them alike.
void check_events(const GroupEvent (&events)[event_count], const std::string& shown) {
  bool used[event_count] = {};
  each_written(event_family(), events, [&](int index, int number, const void*) {
    used[index] = true;
    if (index == number) return;
    add_finding(Class::renumbered, shown, 1,
                {.before = name_of_event(index), .after = name_of_event(number)});
  });
  constexpr GroupEvent blank = {};
  for (int i = 0; i < whole_records; ++i) {
    if (used[i]) continue;
    if (std::memcmp(&events[i], &blank, sizeof blank) == 0)
      add_finding(Class::blank_entry, shown, 1, {.section = name_of_event(i)});
    else
      add_finding(Class::unnamed_entry, shown, 1,
                  {.section = name_of_event(i), .other = event_family().fields[0].key});
  }
}

void check_line_feeds(const GroupEvent (&events)[event_count], const std::string& shown) {
  for (int i = 0; i < whole_records; ++i) {
    for (const Field& field : event_family().fields) {
      if (field.kind != Kind::text) continue;
      const std::string text(text_at(field, &events[i]));
      const std::size_t end = text.find('\n');
      if (end == std::string::npos) continue;
      add_finding(Class::profile_line_feed, shown, 1,
                  {.section = name_of_event(i),
                   .key = field.key,
                   .before = text,
                   .after = text.substr(0, end)});
    }
  }
}

/// Values that do not come back from the file of a group: writes one with all events, and reads it.
int check_values(const GroupEvent (&events)[event_count], const std::string& shown) {
  std::string text;
  for (int i = 0; i < whole_records; ++i) {
    write_section_header(text, event_family(), i);
    for (const Field& field : event_family().fields) write_field(text, field, &events[i]);
  }
  MemoryFile file;
  const int error = file.error() != 0 ? file.error() : file.append(text);
  if (error != 0) return error;
  source_of(group_file, 0).shown = shown;
  const std::size_t before = findings.size();
  {
    const Listening listening;
    g_index = 0;
    EncodeINIFile(group_file, file.path().c_str());
  }
  std::for_each(findings.begin() + static_cast<std::ptrdiff_t>(before), findings.end(),
                [](Finding& finding) { finding.line = 1; });
  return 0;
}

}  // namespace

int check_profile(const std::string& path, const std::string& shown) {
  static GroupEvent events[event_count];
  whole_records = 0;
  record_listener = listen_to_record;
  int error = LoadGroupProfile(path.c_str(), events);
  record_listener = nullptr;
  if (error == 0) error = check_size(path, shown);
  if (error != 0) return error;
  check_events(events, shown);
  check_line_feeds(events, shown);
  return check_values(events, shown);
}
