#include "check/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "check/finding.h"
#include "check/in_use.h"
#include "check/language.h"
#include "check/secret.h"
#include "check/source.h"
#include "config/descriptor.h"
#include "lang/lang_text.h"
#include "tui/diag.h"
#include "tui/format.h"

namespace {

// --- Files that are missing or unreadable --------------------------------------------------------

std::string reason_of(int error) {
  switch (error) {
    case EISDIR:
      return "it is a folder";
    case ESPIPE:
      return "it is a pipe";
    case EFBIG:
      return "it is a device";
    default:
      return std::strerror(error);
  }
}

/// What the operator has of a file that cannot be read.
std::string_view consequence(int file) {
  switch (file) {
    case main_file:
      return "Harrier ends with status 2";
    case jobs_file:
      return "a save fails, and writes kestrel.ini only";
    case job_states_file:
      return "a save fails, and writes kestrel.ini and jobs.ini only";
    case group_file:
      return "a save fails, and writes neither a group nor sensor.ini";
    default:
      return "a save fails, and writes the other files only";
  }
}

void check_source(const Source& source) {
  if (source.error != 0) {
    add_finding(Class::file_unreadable, source.shown, 1,
                {.other = format("(%s): %s", reason_of(source.error).c_str(),
                                 std::string(consequence(source.file)).c_str())});
  } else if (source.missing && source.file == main_file) {
    add_finding(Class::main_missing, source.shown, 1);
  } else if (source.missing && source.file != group_file) {
    add_finding(Class::file_missing, source.shown, 1);
  }
}

// --- The language --------------------------------------------------------------------------------

/// The errno of what keeps a file from being read, 0 for a regular file that can be opened.
int opening_error(const std::string& path) {
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  struct stat info = {};
  if (file.fd < 0 || fstat(file.fd, &info) != 0) return errno;
  if (S_ISREG(info.st_mode)) return 0;
  return S_ISDIR(info.st_mode) ? EISDIR : S_ISFIFO(info.st_mode) ? ESPIPE : EFBIG;
}

/// The file that the editor loads at its start.
void check_language_in_use(const std::string& shown) {
  if (!is_loaded(main_file)) return;
  const unsigned number = INI.system.Language;
  const std::string name = language_file_name(harrier, static_cast<signed char>(number));
  const std::string path = program_path(name);
  const int error = opening_error(path);
  if (error != 0) {
    const std::string what =
        error == ENOENT ? "is not there" : "cannot be read (" + reason_of(error) + ")";
    add_finding(Class::language_missing, entry_of(source_of(main_file), "System"), "Language",
                {.before = std::to_string(number), .other = name + ", which " + what});
  } else if (check_texts(path, shown + name) == ENODATA) {
    add_finding(Class::language_section, entry_of(source_of(main_file), "System"), "Language",
                {.before = std::to_string(number),
                 .other = "Language " + std::to_string(number) + " needs " + name +
                          ", which does not have"});
  }
}

// --- Temporary files -----------------------------------------------------------------------------

/// Whether six letters and digits look drawn at random, as `mkstemp` makes them. Words, dates and
/// numbered words come from people: "backup", "Backup", "BACKUP", "241130", "bak001". Of those
/// drawn, one in forty looks like that.
bool is_drawn(std::string_view text) {
  constexpr std::string_view small = "abcdefghijklmnopqrstuvwxyz";
  constexpr std::string_view capitals = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  constexpr std::string_view digits = "0123456789";
  const auto skip = [&text](std::string_view letters) {
    text.remove_prefix(std::min(text.find_first_not_of(letters), text.size()));
  };
  const std::string all = std::string(small).append(capitals).append(digits);
  constexpr std::size_t length = 6;
  if (text.size() != length || text.find_first_not_of(all) != std::string_view::npos) return false;
  const bool shouted = capitals.find(text[1]) != std::string_view::npos;
  if (capitals.find(text[0]) != std::string_view::npos) text.remove_prefix(1);
  skip(shouted ? capitals : small);
  skip(digits);
  return !text.empty();
}

/// The names in `ProgramDir`. Returns 0 or errno.
int list_folder(std::vector<std::string>& names) {
  const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(ProgramDir), closedir);
  if (folder == nullptr) return errno;
  while (const dirent* const entry = readdir(folder.get())) names.emplace_back(entry->d_name);
  return 0;
}

void check_temporary_files(const std::string& shown) {
  std::vector<std::string> names;
  list_folder(names);
  for (const std::string& name : names) {
    const std::size_t dot = name.rfind('.');
    const std::string of = name.substr(0, dot);
    struct stat info;
    if (dot == std::string::npos || (source_named(of) == nullptr && !is_language_name(of)) ||
        !is_drawn(name.substr(dot + 1)) || lstat(program_path(name).c_str(), &info) != 0 ||
        !S_ISREG(info.st_mode)) {
      continue;
    }
    add_finding(Class::temporary_file, shown + name, 1, {.other = of});
  }
}

// --- Permissions ---------------------------------------------------------------------------------

bool is_set(const Field& field, const void* entry) {
  return field.kind == Kind::text ? !text_at(field, entry).empty() : number_at(field, entry) != 0;
}

/// A secret of kestrel.ini.
struct Secret {
  Entry entry;
  const char* key;
};

/// The first one that is set. No other file has any.
std::optional<Secret> find_secret() {
  if (!is_loaded(main_file)) return {};
  const auto* record = reinterpret_cast<const char*>(&INI);
  for (const Family& family : families_of(main_file)) {
    for (int i = 0; i < family.stored; ++i) {
      const char* entry = record + family.offset + static_cast<std::size_t>(i) * family.size;
      for (const Field& field : family.fields) {
        if (is_secret(field.key) && is_set(field, entry))
          return Secret{{source_of(main_file), family, i}, field.key};
      }
    }
  }
  return {};
}

/// The permissions of a file, 0 when there is none.
mode_t mode_of(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 ? info.st_mode : 0;
}

/// A secret in kestrel.ini, and whatever decides about it.
void check_secret(const Secret& secret) {
  const mode_t mode = mode_of(secret.entry.source.path);
  if ((mode & S_IROTH) != 0) add_finding(Class::secret_readable, secret.entry, secret.key);
  if ((mode & (S_IWGRP | S_IWOTH)) != 0)
    add_finding(Class::secret_writable, secret.entry, secret.key);
}

void check_permissions(const std::string& shown) {
  const std::optional<Secret> secret = find_secret();
  if (secret) check_secret(*secret);
  const mode_t mode = mode_of(program_path("."));
  const bool by_everybody = (mode & S_IWOTH) != 0;
  const bool by_group = secret && (mode & S_IWGRP) != 0;
  if (by_everybody || by_group) {
    const std::string folder = shown.empty() ? "./" : shown;
    const std::string whom = std::string(by_group ? "g" : "") + (by_everybody ? "o" : "");
    // Of "/" nothing would be left.
    add_finding(Class::folder_writable,
                folder.substr(0, std::max<std::size_t>(1, folder.size() - 1)), 1,
                {.after = whom + "-w", .other = by_everybody ? "everybody" : "its group"});
  }
  std::vector<std::string> names{"ups_shut.scr"};
  for (const Source& source : sources) {
    if (!secret || source.file != main_file) names.push_back(name_of(source));
  }
  for (const std::string& name : names) {
    const mode_t its_mode = mode_of(program_path(name));
    if (S_ISREG(its_mode) && (its_mode & S_IWOTH) != 0)
      add_finding(Class::file_writable, shown + name, 1);
  }
}

}  // namespace

int look_for_files() {
  std::vector<std::string> names;
  const int error = list_folder(names);
  if (error != 0) return error;
  struct stat info;
  if (stat(program_path(".").c_str(), &info) != 0) return errno;  // it may be listed only
  const bool any = std::any_of(names.begin(), names.end(), [](const std::string& name) {
    return source_named(name) != nullptr;
  });
  return any ? 0 : ENOENT;
}

void check_empty_files() {
  for (const Source& source : sources) {
    const bool was_read = source.checked && !source.missing && source.error == 0;
    if (was_read && source.lines == 0 && source.file != group_file) {
      const Class kind = source.file == main_file ? Class::main_empty : Class::file_empty;
      add_finding(kind, source.shown, 1);
    }
  }
}

void check_files(const std::string& shown) {
  for (const Source& source : sources) check_source(source);
  check_language_in_use(shown);
  check_temporary_files(shown);
  check_permissions(shown);
}
