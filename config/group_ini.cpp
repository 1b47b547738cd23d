#include "config/group_ini.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "config/destination.h"
#include "config/ini_reader.h"
#include "config/ini_writer.h"
#include "config/known_files.h"
#include "tui/diag.h"

namespace {

// The order of a save, by rank. Usually all files are swapped at once, and a deletion comes last.
// After a UPS has been deleted the UPSs after it have other numbers in the new kestrel.ini, and a
// number can have gone to another UPS, so a group file fits either the old one or the new one.
// Whenever the power fails, no group may name another UPS than it should: the groups leave out the
// members whose numbers change until kestrel.ini has been swapped.
enum Rank { without_moved_members = -2, early_deletion, usual, with_all_members, late_deletion };

/// Section `UPS`: the members of the group, under the first keys.
void write_members(std::string& out, const Family& family, const Group& group) {
  write_section_header(out, family, 0);
  for (int slot = 0; slot < member_count; ++slot) {
    const int key = saved_member(group, slot);
    if (key < 0) continue;
    Field named = family.fields[static_cast<std::size_t>(slot)];
    named.key = family.fields[static_cast<std::size_t>(key)].key;
    write_field(out, named, &group);
  }
  out += '\n';
}

std::string format_group(const Group& group) {
  const auto families = families_of(group_file);
  constexpr std::size_t largest = 65536;
  std::string out;
  out.reserve(largest);
  write_file_header(out);
  write_family(out, families[group_common], &group);
  write_members(out, families[group_members], group);
  write_family(out, families[group_events], group.events);
  return out;
}

/// The UPSs as they were loaded. The files of the groups refer to their numbers.
UPS loaded_ups[ups_count];

/// Whether two entries are the same UPS, perhaps renamed. Another UPS in the same slot has another
/// name, and another type code or serial number.
bool same_ups(const UPS& a, const UPS& b) {
  const bool has_codes = !a.Type.empty() || !a.Serial.empty();
  return a.Name.view() == b.Name.view() ||
         (has_codes && a.Type.view() == b.Type.view() && a.Serial.view() == b.Serial.view());
}

/// How many UPSs keep their numbers in kestrel.ini: those before the first slot that is free or
/// holds another UPS.
int settled_ups() {
  int slot = 0;
  while (slot < ups_count && !INI.ups[slot].Name.empty() && !loaded_ups[slot].Name.empty() &&
         same_ups(INI.ups[slot], loaded_ups[slot])) {
    ++slot;
  }
  return slot;
}

/// Whether a number after those means another UPS than before, or none.
bool numbers_move() {
  for (int slot = settled_ups(); slot < ups_count; ++slot) {
    if (!INI.ups[slot].Name.empty() || !loaded_ups[slot].Name.empty()) return true;
  }
  return false;
}

Group without_members_above(const Group& group, int last) {
  Group part = group;
  for (std::uint16_t& member : part.UPS) {
    if (member > last) member = 0;
  }
  return part;
}

/// Writes the group of a slot as file `number`. `anew` is set for the first group after a gap.
int put_group(int slot, int number, bool anew) {
  const Group& group = INI.group[slot];
  // The group that this file holds has moved to a lower number: its new file goes first.
  const bool ordered = slot != number && !INI.group[number].Name.empty();
  const std::string name = group_file_name(number);
  const std::string contents = format_group(group);
  if (!numbers_move()) {
    return put_file(name.c_str(), contents, {.rank = usual, .ordered = ordered, .anew = anew});
  }
  const std::string part = format_group(without_members_above(group, settled_ups()));
  const int error = put_file(name.c_str(), part,
                             {.rank = without_moved_members, .ordered = ordered, .anew = anew});
  if (error != 0 || part == contents) return error;
  return put_file(name.c_str(), contents, {.rank = with_all_members, .anew = anew});
}

/// The errno of the first group file that could not be read, 0 for none.
int first_read_error() {
  int error = 0;
  for (int number = 0; number < group_count && error == 0; ++number) {
    error = read_error(program_path(group_file_name(number)));
  }
  return error;
}

/// For a rescue beside a group file that could not be read: no other group takes its number.
int put_under_old_numbers() {
  int error = 0;
  for (int slot = 0; slot < group_count && error == 0; ++slot) {
    const Group& group = INI.group[slot];
    if (!group.Name.empty()) error = put_file(group_file_name(slot).c_str(), format_group(group));
  }
  return error;
}

}  // namespace

int LoadGroupsINI() {
  for (int slot = 0; slot < ups_count; ++slot) loaded_ups[slot] = INI.ups[slot];
  int result = 0;
  for (g_index = 0; g_index < group_count; ++g_index) {
    result = EncodeINIFile(group_file, program_path(group_file_name(g_index)).c_str());
  }
  return result;
}

int SaveGroupsINI() {
  const int unread = first_read_error();
  if (unread != 0) return rescuing() ? put_under_old_numbers() : unread;
  const GroupFiles files = group_files_of_save();
  bool anew = false;  // a group that is not in use deletes the file that the next one gets
  for (int slot = 0; slot < group_count; ++slot) {
    const bool used = files.number[slot] >= 0;
    const int error = used ? put_group(slot, files.number[slot], anew) : 0;
    if (error != 0) return error;
    anew = !used;
  }
  if (files.deleted < 0) return 0;
  return delete_file(group_file_name(files.deleted).c_str(),
                     numbers_move() ? early_deletion : late_deletion);
}

GroupFiles group_files_of_save() {
  GroupFiles files = {};
  int written = 0;
  for (int slot = 0; slot < group_count; ++slot) {
    const bool used = !INI.group[slot].Name.empty();
    // Any file that an earlier group deletes is written again by a later one.
    files.deleted = used ? -1 : written;
    files.number[slot] = used ? written++ : -1;
  }
  return files;
}

int saved_member(const Group& group, int slot) {
  if (group.UPS[slot] == 0) return -1;
  return static_cast<int>(
      std::count_if(group.UPS, group.UPS + slot, [](std::uint16_t member) { return member != 0; }));
}

std::string group_file_name(int number) {
  std::string name = "group_xx.ini";
  name[6] = static_cast<char>('0' + number / 10);
  name[7] = static_cast<char>('0' + number % 10);
  return name;
}
