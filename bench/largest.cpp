#include "bench/largest.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

#include "config/events.h"
#include "config/families.h"
#include "config/store.h"

namespace {

/// Fills every value of an entry: texts with a usual length, numbers from 1 to 199, switches on.
void fill_entry(const Family& family, char* entry, int number) {
  int place = number;
  for (const Field& field : family.fields) {
    ++place;
    if (field.kind == Kind::text) {
      const std::string text =
          std::string("/opt/service/scripts/notify ").append(field.key) + std::to_string(place);
      const std::size_t size = std::min<std::size_t>(text.size(), field.width - 1U);
      std::memcpy(bytes_at(field, entry), text.data() + text.size() - size, size);
    } else {
      set_number_at(field, entry, field.is_switch ? 1 : static_cast<unsigned>(1 + place % 199));
    }
  }
}

/// Makes what refers to something else refer to what is there, so the check has nothing to say.
void mend_references() {
  for (int i = 0; i < job_count; ++i) {
    if (!events[i].keeps_shutdown) INI.job[i].Shutdown = 0;
  }
  for (UPS& ups : INI.ups) {
    ups.Type.assign("LUMEN39T3000");
    ups.Connection = 0;
  }
  for (Group& group : INI.group) {
    for (int i = 0; i < member_count; ++i) group.UPS[i] = static_cast<std::uint16_t>(i + 1);
    group.RedundancyLevel = 1;
  }
  for (Sensor& sensor : INI.sensor) sensor.IndexUPS = 1;
}

}  // namespace

void fill_record() {
  INI = {};
  for (int file = 0; file < file_count; ++file) {
    const int copies = file == group_file ? group_count : 1;
    for (int copy = 0; copy < copies; ++copy) {
      for (const Family& family : families_of(file)) {
        char* entry = reinterpret_cast<char*>(&INI) + family.offset +
                      static_cast<std::size_t>(copy) * sizeof(Group);
        for (int i = 0; i < family.stored; ++i, entry += family.size) fill_entry(family, entry, i);
      }
    }
  }
  for (ScheduleEntry& entry : INI.schedule) {
    entry = {};
    entry.action = 4;
    entry.type = 2;
    entry.time = 1262350800;
  }
  mend_references();
  INI.system.Language = 0;  // the language file that always exists
  INI.system.DebugMode = INI.system.DebugLog = 0;
}
