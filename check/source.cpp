#include "check/source.h"

#include <algorithm>
#include <iterator>

#include "config/group_ini.h"

Source sources[source_count];

namespace {
constexpr int first_group = 3;
}

Source& source_of(int file, int group) {
  switch (file) {
    case main_file:
      return sources[0];
    case jobs_file:
      return sources[1];
    case job_states_file:
      return sources[2];
    case group_file:
      return sources[first_group + group];
    default:
      return sources[first_group + group_count];
  }
}

std::string name_of(const Source& source) {
  switch (source.file) {
    case main_file:
      return "kestrel.ini";
    case jobs_file:
      return "jobs.ini";
    case job_states_file:
      return "jobsSTS.ini";
    case group_file:
      return group_file_name(source.group);
    default:
      return "sensor.ini";
  }
}

Source* source_named(std::string_view name) {
  auto* const at = std::find_if(std::begin(sources), std::end(sources),
                                [name](const Source& source) { return name_of(source) == name; });
  return at == std::end(sources) ? nullptr : at;
}

bool is_loaded(int file) {
  return std::all_of(std::begin(sources), std::end(sources), [file](const Source& source) {
    const auto is_there = [](int line) { return line != 0; };
    const bool has_values =
        file != main_file || std::any_of(source.headers.begin(), source.headers.end(), is_there);
    return source.file != file || (source.checked && source.error == 0 && has_values);
  });
}

void reset_sources() {
  constexpr IniFile files[] = {main_file, jobs_file, job_states_file, sensor_file};
  for (const IniFile file : files) source_of(file) = {.file = file};
  for (int group = 0; group < group_count; ++group) {
    source_of(group_file, group) = {.file = group_file, .group = group};
  }
  for (Source& source : sources) {
    std::size_t sections = 0;
    for (const Family& family : families_of(source.file)) {
      sections += static_cast<std::size_t>(family.sections());
    }
    source.headers.assign(sections, 0);
    source.values.assign(sections * key_slots, 0);
  }
}

int line_of(const Source& source, int section, int key) {
  const int line = source.values[place_in_values(section, key)];
  return line != 0 ? line : line_of(source, section);
}

int line_of(const Source& source, int section) {
  return std::max(1, source.headers[static_cast<std::size_t>(section)]);
}

int section_number(int file, const Family& family, int index) {
  int number = index;
  for (const Family& before : families_of(file)) {
    if (&before == &family) break;
    number += before.sections();
  }
  return number;
}

int key_number(const Family& family, const Field& field) {
  return static_cast<int>(&field - family.fields.data());
}
