#include "check/saving.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>
#include <utility>

#include "check/finding.h"
#include "check/moved_ups.h"
#include "check/source.h"
#include "config/group_ini.h"
#include "config/ini_writer.h"
#include "config/store.h"
#include "schedule/schedule_code.h"

namespace {

/// Where a record holds entry 0 of a family of this file.
char* entries_of(const Source& source, const Family& family, Record& record) {
  const auto group = source.file == group_file ? static_cast<std::size_t>(source.group) : 0;
  return reinterpret_cast<char*>(&record) + family.offset + group * sizeof(Group);
}

/// The line of a value itself, 0 when the file has none.
int own_line(const Source& source, int section, int key) {
  return source.values[place_in_values(section, key)];
}

/// The header of a section, or else a line that was taken for it though its header is missing. 0
/// when the file has neither.
int place_of(const Source& source, int section) {
  int line = source.headers[static_cast<std::size_t>(section)];
  for (int key = 0; line == 0 && key < key_slots; ++key) line = own_line(source, section, key);
  return line;
}

void add(Class kind, const Source& source, int line, Facts facts) {
  add_finding(kind, source.shown, line, std::move(facts));
}

/// Whether the number of a UPS changes to which a group, a schedule or a sensor refers.
bool references_move = false;

/// Who renumbers by hand first no longer sees which references are wrong.
std::string warning_of_references(const Source& source, const Family& family) {
  const bool is_ups = source.file == main_file && family.offset == offsetof(Record, ups);
  return is_ups && references_move ? ": mend the references to the UPSs first" : "";
}

// --- Entries -------------------------------------------------------------------------------------

/// An entry that a save does not write.
void add_dropped(const Source& source, int line, const Family& family, const std::string& section,
                 const char* loaded) {
  const bool blank = std::all_of(loaded, loaded + family.size, [](char byte) { return byte == 0; });
  if (blank)
    add(Class::blank_entry, source, line, {.section = section});
  else if (is_written(family, loaded))  // unless the save clears it
    add(Class::no_action, source, line, {.section = section});
  else
    add(Class::unnamed_entry, source, line, {.section = section, .other = family.fields[0].key});
}

/// The entries of a family: those that go, and those that get another number.
void check_entries(const Source& source, const Family& family) {
  int numbers[section_slots];
  std::fill(std::begin(numbers), std::end(numbers), -1);
  each_written(family, entries_of(source, family, INI),
               [&](int index, int number, const char*) { numbers[index] = number; });
  const auto& names = SectionNames[source.file];
  const int start = section_number(source.file, family, 0);
  const auto gap = std::find(std::begin(numbers), std::end(numbers), -1) - std::begin(numbers);
  const char* loaded = entries_of(source, family, INI1);
  for (int i = 0; i < family.stored; ++i, loaded += family.size) {
    if (numbers[i] == i) continue;
    const int line = place_of(source, start + i);
    if (line == 0) continue;
    const std::string section = names[start + i];
    if (numbers[i] < 0)
      add_dropped(source, line, family, section, loaded);
    else
      add(Class::renumbered, source, line,
          {.section = section,
           .before = "[" + section + "]",
           .after = std::string("[") + names[start + numbers[i]] + "]",
           .other = std::string(", because [") + names[start + gap] + "] is not in use" +
                    warning_of_references(source, family)});
  }
}

std::string value_at(const Field& field, const void* entry) {
  return field.kind == Kind::text ? std::string(text_at(field, entry))
                                  : std::to_string(number_at(field, entry));
}

/// The values that a save replaces by a default.
void check_defaults(const Source& source, const Family& family) {
  if (family.defaults == nullptr) return;
  const int start = section_number(source.file, family, 0);
  const char* loaded = entries_of(source, family, INI1);
  char* saved = entries_of(source, family, INI);
  for (int i = 0; i < family.stored; ++i, loaded += family.size, saved += family.size) {
    family.defaults(saved);
    for (const Field& field : family.fields) {
      const int line = own_line(source, start + i, key_number(family, field));
      if (line == 0) continue;
      const std::string before = value_at(field, loaded);
      const std::string after = value_at(field, saved);
      if (before == after) continue;
      add(Class::default_written, source, line,
          {.section = SectionNames[source.file][start + i],
           .key = field.key,
           .before = before,
           .after = after});
    }
  }
}

void check_sections(const Source& source) {
  for (const Family& family : families_of(source.file)) {
    check_entries(source, family);
    check_defaults(source, family);
  }
}

// --- Groups --------------------------------------------------------------------------------------

/// The members of a group in use. Conditions of its events may refer to their numbers.
void check_members(const Source& source) {
  const Family& family = families_of(group_file)[group_members];
  const int section = section_number(group_file, family, 0);
  for (int slot = 0; slot < member_count; ++slot) {
    const int line = own_line(source, section, slot);
    const int key = saved_member(INI1.group[source.group], slot);
    if (line == 0 || key == slot) continue;
    const auto key_of = [&](int number) {
      return family.fields[static_cast<std::size_t>(number)].key;
    };
    const std::string dot = std::string(family.name) + ".";
    if (key < 0)
      add(Class::blank_entry, source, line, {.section = family.name, .key = key_of(slot)});
    else
      add(Class::renumbered, source, line,
          {.section = family.name,
           .key = key_of(slot),
           .before = dot + key_of(slot),
           .after = dot + key_of(key)});
  }
}

/// The slot of the group that gets a file number, -1 for none.
int taker_of(int number, const GroupFiles& files) {
  const auto* const end = files.number + group_count;
  const auto* const at = std::find(files.number, end, number);
  return at == end ? -1 : static_cast<int>(at - files.number);
}

/// What a save does with the file of a group that it does not write.
std::string fate_of_unused(int number, const GroupFiles& files) {
  const int taker = taker_of(number, files);
  if (taker >= 0) return ": a save puts the group of " + group_file_name(taker) + " in its place";
  return files.deleted == number ? ": a save deletes this file"
                                 : ": a save leaves this file as it is";
}

/// A group whose file gets another number.
void add_moved_group(const Source& source, const GroupFiles& files) {
  const int number = source.group;
  const std::string after = group_file_name(files.number[number]);
  if (taker_of(number, files) >= 0 || files.deleted == number)
    add(Class::renumbered, source, 1, {.before = group_file_name(number), .after = after});
  else
    add(Class::leftover_group, source, 1, {.after = after});
}

/// The numbers of group files depend on all groups, so they are looked at only when all are known.
void check_group(const Source& source) {
  const bool all_known = is_loaded(group_file);
  const GroupFiles files = group_files_of_save();
  if (INI1.group[source.group].Name.empty()) {
    add(Class::unnamed_group, source, 1,
        {.other = all_known ? fate_of_unused(source.group, files) : ": a save does not write it"});
    return;
  }
  if (all_known && files.number[source.group] != source.group) add_moved_group(source, files);
  check_members(source);
  check_sections(source);
}

}  // namespace

void check_saving() {
  references_move = check_moved_ups();
  // A save does this too. `INI` becomes what is written, `INI1` stays what was loaded.
  EncodeSchedules();
  for (const Source& source : sources) {
    // A file that could not be read is not written.
    if (!source.checked || source.missing || source.error != 0) continue;
    if (source.file == group_file)
      check_group(source);
    else
      check_sections(source);
  }
  copy_record(INI, INI1);
}
