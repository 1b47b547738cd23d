#pragma once

#include <cstdint>
#include <span>

#include "config/fields.h"

/// What the files of the service can hold, in tables: which sections a file has, and which keys a
/// section.

/// Sections that share one vocabulary: a list such as `UPS_00` to `UPS_31`, or a single section.
struct Family {
  const char* name;  // of a single section, or what precedes the two digits of a numbered one
  int count;         // section names, numbered from 00; 0 for a single section
  bool only_used;    // written only while its first value is neither empty nor 0
  std::span<const Field> fields;  // in the order of key numbers, which is that of the file
  std::uint32_t offset;           // of entry 0 in the record (of group 0 for a group file)
  std::uint32_t size;             // bytes from one entry to the next
  int stored;  // entries that the record has room for; values for the others are dropped

  /// Called after `field` of entry `index` has been loaded; corrects a value that may not stay.
  void (*loaded)(void* entry, int index, const Field& field) = nullptr;

  /// Fills empty values just before the entry is written.
  void (*defaults)(void* entry) = nullptr;

  constexpr int sections() const { return count == 0 ? 1 : count; }
};

/// The text files of the service, as `EncodeINIFile` takes them.
enum IniFile { main_file, jobs_file, group_file, sensor_file, job_states_file };

/// The places of the families of a group file.
enum GroupFamily { group_common, group_members, group_events };

constexpr int file_count = 5;
constexpr int section_slots = 120;
constexpr int row_slots = 16;
constexpr int key_slots = 37;
constexpr int name_width = 50;

/// Returns the families of a file, in the order of their section numbers. The place of a family in
/// this list is the number of its row in `LineNames`.
std::span<const Family> families_of(int file);

/// Returns the family of section `section` of a file, or null when there is no such file or
/// section. `index` becomes the number of the section within the family.
const Family* family_of(int file, int section, int& index);

/// The names of the sections of every file; unused slots are empty.
extern const char (&SectionNames)[file_count][section_slots][name_width];

/// The names of the keys of every family; unused slots are empty.
extern const char (&LineNames)[file_count][row_slots][key_slots][name_width];
