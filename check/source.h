#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "config/families.h"
#include "config/record.h"

/// The files of a configuration while it is checked, and where in them each value stands.

/// A text file of the service.
struct Source {
  IniFile file = main_file;
  int group = 0;           // its number, of a group file
  std::string path = {};   // where it is read
  std::string shown = {};  // what findings call it
  bool checked = false;    // part of this run
  bool missing = false;    // there is no such file
  int error = 0;           // errno of opening and reading it, unless it is missing
  int lines = 0;           // of all it has

  /// The first line of each section, and the line whose value counts for each key of a section. 0
  /// where there is none.
  std::vector<int> headers = {};
  std::vector<int> values = {};
};

/// kestrel.ini, jobs.ini, jobsSTS.ini, the ten group files, sensor.ini: as they are loaded.
constexpr int source_count = 4 + group_count;
extern Source sources[source_count];

/// The source of a file; `group` counts for group files only.
Source& source_of(int file, int group = 0);

/// The name of a file of the service: "group_03.ini".
std::string name_of(const Source& source);

/// The source with this name, null when there is none.
Source* source_named(std::string_view name);

/// Whether the values of a file are known: it is part of this run and could be read. The values of
/// a missing file are known too: they are empty and 0. Of kestrel.ini at least one section must be
/// there. `group_file` means the files of all groups.
bool is_loaded(int file);

/// Clears all sources.
void reset_sources();

/// The place of a key of a section in `Source::values`.
constexpr std::size_t place_in_values(int section, int key) {
  return static_cast<std::size_t>(section) * key_slots + static_cast<std::size_t>(key);
}

/// The line of a value: its own, or else that of its section, or else 1.
int line_of(const Source& source, int section, int key);

/// The line of a section's header, or 1.
int line_of(const Source& source, int section);

/// The number of section `index` of the family of a file.
int section_number(int file, const Family& family, int index);

/// The number of the key of `field` in its family.
int key_number(const Family& family, const Field& field);
