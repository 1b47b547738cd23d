#include "config/attributes.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

// Extended attributes are no part of POSIX. Linux keeps access control lists among them.
#if __has_include(<sys/xattr.h>)
#include <sys/xattr.h>
#endif

namespace {

#if __has_include(<sys/xattr.h>)

constexpr std::string_view access_list = "system.posix_acl_access";

/// The names of the attributes of a file. A file system may have none.
int list_names(int fd, std::vector<std::string>& names) {
  char list[4096];
  const ssize_t size = flistxattr(fd, list, sizeof list);
  if (size < 0) return errno == EOPNOTSUPP || errno == ENOSYS ? 0 : errno;
  for (std::string_view left(list, static_cast<std::size_t>(size)); !left.empty();) {
    names.emplace_back(left.substr(0, left.find('\0')));
    left.remove_prefix(names.back().size() + 1);
  }
  return 0;
}

int read_value(int fd, const std::string& name, std::string& value) {
  value.resize(65536);  // the most that Linux keeps in one
  const ssize_t size = fgetxattr(fd, name.c_str(), value.data(), value.size());
  if (size < 0) return errno;
  value.resize(static_cast<std::size_t>(size));
  return 0;
}

int copy_value(int fd, int old, const std::string& name) {
  std::string wanted;
  std::string present;
  const int error = read_value(old, name, wanted);
  if (error != 0) return error;
  if (read_value(fd, name, present) == 0 && present == wanted) return 0;
  return fsetxattr(fd, name.c_str(), wanted.data(), wanted.size(), 0) == 0 ? 0 : errno;
}

/// Removes what the folder has given to the file, unless the old file has it as well.
int remove_inherited(int fd, const std::vector<std::string>& wanted) {
  std::vector<std::string> names;
  const int error = list_names(fd, names);
  if (error != 0) return error;
  for (const std::string& name : names) {
    const bool kept = std::find(wanted.begin(), wanted.end(), name) != wanted.end();
    if (kept || name != access_list) continue;
    if (fremovexattr(fd, name.c_str()) != 0) return errno;
  }
  return 0;
}

#else

int list_names(int, std::vector<std::string>&) { return 0; }
int copy_value(int, int, const std::string&) { return 0; }
int remove_inherited(int, const std::vector<std::string>&) { return 0; }
constexpr std::string_view access_list;

#endif

int set_mode(int fd, mode_t mode) { return fchmod(fd, mode) == 0 ? 0 : errno; }

mode_t mode_of_new_files() {
  const mode_t mask = umask(0);
  umask(mask);
  return 0666 & ~mask;
}

}  // namespace

int take_over_attributes(int fd, int old, const struct stat& info) {
  std::vector<std::string> names;
  int error = list_names(old, names);
  if (error == 0) error = remove_inherited(fd, names);
  if (error != 0) return error;
  // Always, since the folder may have given the file a group of its own.
  if (fchown(fd, info.st_uid, info.st_gid) != 0) return errno;
  error = set_mode(fd, info.st_mode & 07777);
  for (std::size_t i = 0; error == 0 && i < names.size(); ++i)
    error = copy_value(fd, old, names[i]);
  return error;
}

int take_model_attributes(int fd, int model) {
  struct stat info = {};
  if (model < 0 || fstat(model, &info) != 0) return set_mode(fd, mode_of_new_files());
  std::vector<std::string> names;
  int error = list_names(model, names);
  const bool listed = std::find(names.begin(), names.end(), access_list) != names.end();
  if (error == 0) error = remove_inherited(fd, {});
  if (error != 0) return error;

  const bool owned = fchown(fd, info.st_uid, info.st_gid) == 0;
  const bool same_group = owned || fchown(fd, static_cast<uid_t>(-1), info.st_gid) == 0;
  mode_t mode = info.st_mode & 0777;
  constexpr mode_t group_bits = 070;
  const bool list_kept =
      !listed || (same_group && copy_value(fd, model, std::string(access_list)) == 0);
  if (!same_group || !list_kept) mode = (mode & ~group_bits) | (mode & 07) << 3;
  set_mode(fd, mode);  // where it is refused, the owner alone may read the file
  return 0;
}
