#include "tests/check_properties.h"

#include <algorithm>
#include <cstring>

#include "check/check.h"
#include "check/finding.h"
#include "command/escaped.h"
#include "config/families.h"
#include "config/group_ini.h"
#include "config/ini_reader.h"
#include "config/store.h"
#include "tests/meaning_of_files.h"

namespace {

/// How far what a finding says reaches from its line.
enum class Reach { nothing_lost, line, section, file };

Reach reach_of(Class kind) {
  switch (kind) {
    case Class::utf16:
    case Class::more_findings:
    case Class::unnamed_group:
    case Class::leftover_group:
      return Reach::file;
    case Class::indented:
    case Class::unknown_section:
    case Class::unclosed_header:
    case Class::long_line:
    case Class::too_many:
    case Class::no_room:
    case Class::mark_before_header:
    case Class::keys_replaced:
    case Class::unnamed_entry:
    case Class::blank_entry:
    case Class::no_action:
    case Class::renumbered:
      return Reach::section;
    case Class::carriage_return:
    case Class::section_twice:
    case Class::not_a_switch:
    case Class::not_utf8:
    case Class::control_bytes:
      return Reach::nothing_lost;
    default:
      break;
  }
  const ClassGroup group = row_of(kind).group;
  const bool says_loss = group != ClassGroup::meaning && group != ClassGroup::files;
  return says_loss || kind == Class::schedule_code ? Reach::line : Reach::nothing_lost;
}

/// The header whose findings count for a line too: for one that comes twice, the first.
int first_header(const std::vector<Finding>& found, const std::string& file,
                 const Statement& lost) {
  const auto twice = std::find_if(found.begin(), found.end(), [&](const Finding& finding) {
    return finding.kind == Class::section_twice && finding.file == file &&
           finding.line == lost.header_line;
  });
  return twice == found.end() ? lost.header_line : std::stoi(twice->facts.other);
}

/// A group file that gets another number does so as a whole.
bool covers(const Finding& finding, const Statement& lost, int first_header) {
  const Reach reach = reach_of(finding.kind);
  if (reach == Reach::nothing_lost) return false;
  const bool whole =
      reach == Reach::file || (finding.line == 1 && finding.facts.before.starts_with("group_"));
  const bool above = finding.line == lost.header_line || finding.line == first_header;
  return whole || finding.line == lost.line || (reach == Reach::section && above);
}

bool has_finding(const std::vector<Finding>& found, const std::string& file,
                 const Statement& lost) {
  const int first = first_header(found, file, lost);
  return std::any_of(found.begin(), found.end(), [&](const Finding& finding) {
    const bool any_file = finding.kind == Class::more_findings;
    return any_file || (finding.file == file && covers(finding, lost, first));
  });
}

std::string account_of(const Finding& finding) {
  return finding.file + ":" + std::to_string(finding.line) + ": " + sentence_of(finding) + " [" +
         name_of(row_of(finding.kind)) + "]";
}

/// The first finding that no file deserves which the program has written.
std::string first_blame() {
  for (const Finding& finding : findings) {
    const ClassGroup group = row_of(finding.kind).group;
    if (group == ClassGroup::reading || group == ClassGroup::saving) return account_of(finding);
  }
  return {};
}

int load() {
  actual_section = 255;
  return LoadINI();
}

/// Files of groups that a save has not written stay as they were.
void remove_left_groups(const Folder& folder) {
  const auto used = std::count_if(std::begin(INI.group), std::end(INI.group),
                                  [](const Group& group) { return !group.Name.empty(); });
  for (int number = static_cast<int>(used); number < group_count; ++number) {
    folder.remove(group_file_name(number));
  }
}

// --- Records ------------------------------------------------------------------------------------

/// Hands out bytes from the first to the last, then zeros.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}

  unsigned next() {
    if (bytes_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(bytes_[0]);
    bytes_.remove_prefix(1);
    return byte;
  }

  std::string_view next(std::size_t size) {
    const std::string_view part = bytes_.substr(0, size);
    bytes_.remove_prefix(part.size());
    return part;
  }

 private:
  std::string_view bytes_;
};

void fill_field(Bytes& bytes, const Field& field, char* entry, bool is_first, bool from_profile) {
  if (field.kind != Kind::text) {
    const unsigned form = bytes.next();
    unsigned value = form < 128 ? form : form << 8U | bytes.next();
    if (is_first && field.kind == Kind::low_u8 && (value & 0xFFU) == 0) value = 0;
    set_number_at(field, entry, value);
    return;
  }
  std::string text(bytes.next(bytes.next() % (field.width + 1)));
  if (!from_profile) std::replace(text.begin(), text.end(), '\n', ' ');
  if (is_first && text.starts_with('"')) text[0] = '\'';
  std::memcpy(bytes_at(field, entry), text.data(), text.size());
}

void fill_family(Bytes& bytes, const Family& family, char* entries, bool from_profile) {
  for (int i = 0; i < family.stored; ++i) {
    if (family.only_used && bytes.next() % 4 == 0) continue;
    for (const Field& field : family.fields) {
      fill_field(bytes, field, entries + static_cast<std::size_t>(i) * family.size,
                 &field == family.fields.data(), from_profile);
    }
  }
}

void fill_schedules(Bytes& bytes) {
  for (ScheduleEntry& entry : INI.schedule) {
    entry.action = static_cast<std::uint8_t>(bytes.next());
    if (entry.action == 0) continue;
    for (int i = 0; i < 4; ++i)
      entry.time =
          static_cast<std::int32_t>(static_cast<std::uint32_t>(entry.time) << 8U | bytes.next());
    entry.ups = static_cast<std::uint16_t>(bytes.next() << 8U | bytes.next());
    entry.type = static_cast<std::uint8_t>(bytes.next());
    entry.day = static_cast<std::uint8_t>(bytes.next());
  }
}

}  // namespace

std::string first_silent_line(const Folder& folder) {
  const Folder::Files before = folder.files();
  check_folder(folder.path(), "");
  const std::vector<Finding> found = findings;
  folder.use();
  if (load() != 0) return {};
  if (SaveINI() != 0) return "the files cannot be saved";
  const Folder::Files after = folder.files();
  for (const auto& [name, bytes] : before) {
    const auto at = after.find(name);
    const std::string saved = at == after.end() ? "" : at->second;
    if (saved == bytes) continue;
    for (const Statement& lost : lost_lines(bytes, saved)) {
      if (!has_finding(found, name, lost))
        return "not brought back, and no finding says so: " + name + ":" +
               std::to_string(lost.line) + ": " + escaped(lost.text);
    }
  }
  remove_left_groups(folder);
  check_folder(folder.path(), "");
  const std::string blame = first_blame();
  return blame.empty() ? blame : "after the save: " + blame;
}

std::string first_false_alarm(const Folder& folder) {
  folder.hold({});
  folder.use();
  if (SaveINI() != 0) return "the files cannot be saved";
  check_folder(folder.path(), "");
  return first_blame();
}

void make_record(std::string_view input) {
  Bytes bytes(input);
  INI = {};
  auto* const record = reinterpret_cast<char*>(&INI);
  for (const int file : {main_file, group_file, sensor_file, jobs_file, job_states_file}) {
    for (int group = 0; group < (file == group_file ? group_count : 1); ++group) {
      if (file == group_file && bytes.next() % 3 == 0) continue;
      char* const start = record + static_cast<std::size_t>(group) * sizeof(Group);
      for (const Family& family : families_of(file)) {
        const bool schedules = record + family.offset == reinterpret_cast<char*>(INI.schedule);
        const bool events = file == group_file && &family == &families_of(file)[group_events];
        if (schedules)
          fill_schedules(bytes);
        else
          fill_family(bytes, family, start + family.offset, events);
      }
    }
  }
}
