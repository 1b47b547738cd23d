#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

#include "config/fields.h"
#include "config/ini_reader.h"
#include "config/store.h"
#include "tests/fuzz/scratch.h"

/// A whole configuration, one file of each kind, whatever is in them: it loads, and once it has
/// been saved, loading and saving change nothing any more.
///
/// A single group file on purpose. With several, a save may leave one behind that no group has
/// written, and the next start takes it for one more group.

namespace {

constexpr const char* names[] = {"kestrel.ini", "jobs.ini", "jobsSTS.ini", "group_00.ini",
                                 "sensor.ini"};
constexpr char file_separator = '\x1c';  // between the files of an input; the last takes the rest

void write_files(const Scratch& folder, std::string_view input) {
  for (const char* name : names) {
    const bool last = name == names[std::size(names) - 1];
    const std::size_t size =
        last ? input.size() : std::min(input.find(file_separator), input.size());
    folder.write(name, input.substr(0, size));
    input.remove_prefix(std::min(input.size(), size + 1));
  }
}

template <typename T>
bool is_zero(const T& object) {
  const auto* bytes = reinterpret_cast<const char*>(&object);
  return bytes[0] == 0 && std::memcmp(bytes, bytes + 1, sizeof object - 1) == 0;
}

/// What no file can reach stays zero, and a switch within its 8 bits.
void check_record() {
  require(is_zero(INI.spare) && is_zero(INI.email_config.spare) && is_zero(INI.mess_config.spare) &&
              is_zero(INI.wap_config.spare) && is_zero(INI.group[0].spare),
          "spare bytes stay zero");
  for (const ScheduleEntry& entry : INI.schedule) {
    require(is_zero(entry.spare) && entry.last == 0, "the moment of firing is in no file");
  }
  for (int i = 1; i < group_count; ++i) require(is_zero(INI.group[i]), "other groups stay empty");
  for (int kind = 0; kind < kind_count; ++kind) {
    for (const Family& family : families_of(kind)) {
      const char* entry = reinterpret_cast<const char*>(&INI) + family.offset;
      for (int i = 0; i < family.stored; ++i, entry += family.size) {
        for (const Field& field : family.fields) {
          require(field.kind != Kind::low_u8 || number_at(field, entry) <= 255,
                  "a switch has 8 bits");
        }
      }
    }
  }
}

/// Loads as a new start does, and saves.
Scratch::Files load_and_save(const Scratch& folder) {
  actual_section = 255;
  require(LoadINI() == 0, "the configuration loads");
  check_record();
  require(SaveINI() == 0, "the configuration can be saved");
  return folder.files();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Scratch folder;
  folder.clear();
  write_files(folder, text_of(data, size));
  const Scratch::Files saved = load_and_save(folder);
  require(load_and_save(folder) == saved, "what was saved is saved again, byte for byte");
  return 0;
}
