#include "check/moved_ups.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

#include "check/finding.h"
#include "check/source.h"
#include "config/ini_writer.h"

namespace {

/// The list of kestrel.ini whose entries lie in this member of the record.
#define LIST_OF(member) list_at(offsetof(Record, member), sizeof(*Record::member))

const Family& list_at(std::size_t offset, std::size_t size) {
  const auto families = families_of(main_file);
  // Other families may begin at the same place, but their entries have another size.
  return *std::find_if(families.begin(), families.end(), [=](const Family& family) {
    return family.offset == offset && family.size == size;
  });
}

const Family& ups_family() { return LIST_OF(ups); }

std::string ups_name(int slot) {
  return SectionNames[main_file][section_number(main_file, ups_family(), slot)];
}

/// What a save makes of the numbers of the UPSs.
struct Numbers {
  int next[ups_count];   // the number that the UPS in a slot gets, -1 for a free slot
  int taker[ups_count];  // the slot of the UPS that gets a number, -1 for none
};

Numbers numbers_of_save() {
  Numbers numbers;
  std::fill(std::begin(numbers.next), std::end(numbers.next), -1);
  std::fill(std::begin(numbers.taker), std::end(numbers.taker), -1);
  each_written(ups_family(), INI1.ups, [&](int slot, int number, const char*) {
    numbers.next[slot] = number;
    numbers.taker[number] = slot;
  });
  return numbers;
}

bool changes(const Numbers& numbers, int slot) {
  if (slot < 0 || slot >= ups_count) return false;
  return numbers.next[slot] >= 0 ? numbers.next[slot] != slot : numbers.taker[slot] >= 0;
}

/// A reference in the value of `field` of section `index` of a family.
struct Reference {
  const Source& source;
  const Family& family;
  int index;
  const Field& field;
  std::string before;  // as the file has it
};

void add_moved(const Reference& reference, const std::string& other, const std::string& after) {
  const Source& source = reference.source;
  const int section = section_number(source.file, reference.family, reference.index);
  const int key = key_number(reference.family, reference.field);
  add_finding(Class::reference_moves, source.shown, line_of(source, section, key),
              {.section = SectionNames[source.file][section],
               .key = reference.field.key,
               .before = reference.before,
               .after = after,
               .other = other});
}

/// A reference to one slot.
void add_moved(const Reference& reference, const Numbers& numbers, int slot) {
  if (numbers.next[slot] >= 0) {
    add_moved(reference, ups_name(slot) + ", which", ups_name(numbers.next[slot]));
  } else {
    const std::string taker = ups_name(numbers.taker[slot]);
    add_moved(reference, ups_name(slot) + ", which is not in use, but " + taker, ups_name(slot));
  }
}

/// Members hold the slot plus one.
void check_members(const Numbers& numbers, int group) {
  const Family& family = families_of(group_file)[group_members];
  for (int i = 0; i < member_count; ++i) {
    const int slot = INI1.group[group].UPS[i] - 1;
    if (!changes(numbers, slot)) continue;
    add_moved({source_of(group_file, group), family, 0, family.fields[static_cast<std::size_t>(i)],
               std::to_string(slot + 1)},
              numbers, slot);
  }
}

/// Schedules hold the slot, as four digits of their code.
void check_schedules(const Numbers& numbers) {
  const Family& family = LIST_OF(schedule);
  for (int i = 0; i < schedule_count; ++i) {
    const ScheduleEntry& entry = INI1.schedule[i];
    if (entry.action == 0 || !changes(numbers, entry.ups)) continue;
    add_moved({source_of(main_file), family, i, family.fields[0], std::string(entry.code.view())},
              numbers, entry.ups);
  }
}

/// The service may count the UPSs of the sensors from 0 or from 1, so both have to change.
void check_sensors(const Numbers& numbers) {
  const Family& family = families_of(sensor_file)[0];
  const Field& field = *std::find_if(
      family.fields.begin(), family.fields.end(),
      [](const Field& candidate) { return candidate.offset == offsetof(Sensor, IndexUPS); });
  for (int i = 0; i < sensor_count; ++i) {
    const int slot = INI1.sensor[i].IndexUPS;
    if (!changes(numbers, slot) || !changes(numbers, slot - 1)) continue;
    add_moved({source_of(sensor_file), family, i, field, std::to_string(slot)},
              ups_name(slot - 1) + " or " + ups_name(slot) + ", and either number",
              "that of another UPS or none");
  }
}

}  // namespace

bool changes_with_save(int slot) { return changes(numbers_of_save(), slot); }

bool check_moved_ups() {
  const std::size_t known = findings.size();
  // Without kestrel.ini no UPS is in use, so no number changes.
  const Numbers numbers = numbers_of_save();
  check_schedules(numbers);
  for (int group = 0; group < group_count; ++group) {
    if (!INI1.group[group].Name.empty()) check_members(numbers, group);
  }
  check_sensors(numbers);
  return findings.size() > known;
}
