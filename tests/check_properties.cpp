#include "tests/check_properties.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "check/check.h"
#include "check/finding.h"
#include "command/escaped.h"
#include "config/families.h"
#include "config/group_ini.h"
#include "config/ini_reader.h"
#include "config/store.h"
#include "schedule/schedule_code.h"
#include "tests/meaning_of_files.h"

namespace {

// How far a loss reaches that a finding reports: to the whole file, or to all lines under its
// header. Any other is that of a line.
constexpr Class of_the_file[] = {Class::utf16, Class::more_findings, Class::unnamed_group,
                                 Class::leftover_group};
constexpr Class of_the_section[] = {
    Class::indented,           Class::unknown_section, Class::unclosed_header, Class::long_line,
    Class::too_many,           Class::no_room,         Class::unnamed_entry,   Class::blank_entry,
    Class::mark_before_header, Class::keys_replaced,   Class::no_action,       Class::renumbered,
};
constexpr Class of_no_loss[] = {Class::carriage_return, Class::section_twice, Class::not_a_switch,
                                Class::not_utf8, Class::control_bytes};

bool is_one_of(std::span<const Class> kinds, const Finding& finding) {
  return std::find(kinds.begin(), kinds.end(), finding.kind) != kinds.end();
}

bool says_loss(const Finding& finding) {
  if (finding.kind == Class::schedule_code || is_one_of(of_the_file, finding)) return true;
  const ClassGroup group = row_of(finding.kind).group;
  return group != ClassGroup::meaning && group != ClassGroup::files &&
         !is_one_of(of_no_loss, finding);
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
  if (!says_loss(finding)) return false;
  const bool whole = is_one_of(of_the_file, finding) ||
                     (finding.line == 1 && finding.facts.before.starts_with("group_"));
  const bool above = finding.line == lost.header_line || finding.line == first_header;
  return whole || finding.line == lost.line || (above && is_one_of(of_the_section, finding));
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
    const std::string_view byte = next(1);
    return byte.empty() ? 0 : static_cast<unsigned char>(byte[0]);
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

}  // namespace

std::string first_silent_line(const Folder& folder) {
  const Folder::Files before = folder.files();
  check_folder(folder.path(), "");
  const std::vector<Finding> found = findings;
  folder.use();
  if (load() != 0 || SaveINI() != 0) return "the files cannot be loaded and saved";
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
  const Folder::Files kept = folder.files();
  check_folder(folder.path(), "");
  const std::string blame = first_blame();
  if (!blame.empty()) return "after the save: " + blame;
  const bool same = load() == 0 && SaveINI() == 0 && folder.files() == kept;
  return same ? "" : "a second save changes what the first one has written";
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
        const bool events = file == group_file && &family == &families_of(file)[group_events];
        fill_family(bytes, family, start + family.offset, events);
      }
    }
  }
  DecodeSchedules();
}
