#include "config/group_ini.h"

#include <unistd.h>

#include <cerrno>

#include "config/ini_reader.h"
#include "config/ini_writer.h"
#include "config/replace_file.h"
#include "tui/diag.h"

namespace {

std::string group_path(int number) {
  char name[] = "group_xx.ini";
  name[6] = static_cast<char>('0' + number / 10);
  name[7] = static_cast<char>('0' + number % 10);
  return program_path(name);
}

/// Section `UPS`: the members of the group, under the first keys.
void write_members(std::string& out, const Family& family, const Group& group) {
  write_section_header(out, family, 0);
  std::size_t used = 0;
  for (const Field& member : family.fields) {
    if (number_at(member, &group) == 0) continue;
    Field named = member;
    named.key = family.fields[used++].key;
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

/// Deletes the file of a group that is gone. It is no error when the file may not be deleted. The
/// folder is flushed first: the group that this file held may have moved to a lower number, and its
/// new file must reach the disk before the old one goes.
int delete_file(const std::string& path) {
  if (access(path.c_str(), F_OK) != 0) return 0;
  const int error = sync_folder(path);
  if (error != 0 || unlink(path.c_str()) == 0) return error;
  const bool kept = errno == EACCES || errno == EPERM || errno == EROFS || errno == EBUSY;
  return kept || errno == ENOENT || errno == EISDIR ? 0 : errno;
}

}  // namespace

int LoadGroupsINI() {
  int result = 0;
  for (g_index = 0; g_index < group_count; ++g_index) {
    result = EncodeINIFile(group_file, group_path(g_index).c_str());
  }
  return result;
}

int SaveGroupsINI() {
  int written = 0;
  for (const Group& group : INI.group) {
    if (group.Name.empty()) continue;
    const int error = replace_file(group_path(written++), format_group(group));
    if (error != 0) return error;
  }
  // The deletion of a file that a later group replaces anyway can be left out. What remains are the
  // groups after the last one in use, and they all delete the same file.
  return INI.group[group_count - 1].Name.empty() ? delete_file(group_path(written)) : 0;
}
