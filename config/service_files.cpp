#include "config/service_files.h"

#include <dirent.h>
#include <fnmatch.h>
#include <sys/stat.h>

#include <algorithm>
#include <iterator>

#include "config/replace_file.h"
#include "tui/diag.h"

namespace {

constexpr const char* patterns[] = {
    "kestrel.ini",          "jobs.ini",   "jobsSTS.ini",  "sensor.ini", "group_[0-9][0-9].ini",
    "lang*_[0-9][0-9].ini", "debugs.log", "ups_shut.scr", "harrier",    "harrier-check",
    "harrier-languages",
};

bool is_service_name(const std::string& name) {
  return std::any_of(std::begin(patterns), std::end(patterns),
                     [&](const char* pattern) { return fnmatch(pattern, name.c_str(), 0) == 0; });
}

bool same_file(const std::string& a, const std::string& b) {
  struct stat first = {};
  struct stat second = {};
  return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// Whether a file of the program's folder with a name of the service is the file `path`.
bool has_further_name(const std::string& path) {
  DIR* const folder = opendir(ProgramDir);
  if (folder == nullptr) return false;
  bool found = false;
  while (const dirent* const entry = found ? nullptr : readdir(folder)) {
    found = is_service_name(entry->d_name) && same_file(program_path(entry->d_name), path);
  }
  closedir(folder);
  return found;
}

}  // namespace

std::string model_file() { return program_path("kestrel.ini"); }

bool is_service_file(const std::string& path) {
  std::string target = path;
  follow_links(target);
  const std::size_t name = target.rfind('/') + 1;
  const std::string folder = name == 0 ? "." : target.substr(0, name);
  return (same_file(folder, ProgramDir) && is_service_name(target.substr(name))) ||
         has_further_name(path) || same_file(path, "/proc/self/exe");
}
