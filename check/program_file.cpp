#include "check/program_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>
#include <vector>

#include "tui/diag.h"

namespace {

using Names = std::vector<std::string>;

/// The names on an absolute path. None for a path that is relative or leads upwards.
Names names_on(const std::string& path) {
  if (!path.starts_with('/')) return {};
  Names names;
  std::istringstream parts(path);
  for (std::string name; std::getline(parts, name, '/');) {
    if (name == "..") return {};
    if (!name.empty() && name != ".") names.push_back(name);
  }
  return names;
}

/// The folder as the operator calls it, and without symbolic links.
std::vector<Names> names_of_folder() {
  std::vector<Names> all;
  char here[PATH_MAX];
  const std::string folder = ProgramDir;
  if (folder.starts_with('/'))
    all.push_back(names_on(folder));
  else if (getcwd(here, sizeof here) != nullptr)
    all.push_back(names_on(std::string(here) + "/" + folder));
  if (realpath(ProgramDir, here) != nullptr) all.push_back(names_on(here));
  return all;
}

/// The names that lead from the folder to a file in it. None for other files.
Names names_inside(const std::string& path) {
  const Names names = names_on(path);
  for (const Names& folder : names_of_folder()) {
    if (!folder.empty() && names.size() > folder.size() &&
        std::equal(folder.begin(), folder.end(), names.begin())) {
      return {names.begin() + static_cast<std::ptrdiff_t>(folder.size()), names.end()};
    }
  }
  return {};
}

std::string missing(int error) { return error == ENOENT || error == ENOTDIR ? "is not there" : ""; }

std::string fault_of(const struct stat& info) {
  if (S_ISDIR(info.st_mode)) return "is a folder";
  constexpr mode_t executable = S_IXUSR | S_IXGRP | S_IXOTH;
  return (info.st_mode & executable) != 0 ? "" : "is not executable";
}

/// Empty for a path that is not in the folder, or comes upon a symbolic link.
std::string fault_of_path(const std::string& path) {
  std::string at = ProgramDir;
  struct stat info = {};
  const Names names = names_inside(path);
  if (names.empty()) return "";
  for (const std::string& name : names) {
    at += name;
    if (lstat(at.c_str(), &info) != 0) return missing(errno);
    if (S_ISLNK(info.st_mode)) return "";
    at += '/';
  }
  return fault_of(info);
}

}  // namespace

std::string fault_of_command(const std::string& command) {
  constexpr std::string_view plain =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._-+,:@=";
  const std::string program = command.substr(0, command.find(' '));
  if (program.find_first_not_of(plain) != std::string::npos) return "";
  // The service may take the whole text for the name of the program.
  const std::string fault = fault_of_path(program);
  return fault.empty() || fault_of_path(command).empty() ? "" : fault;
}

std::string fault_of_script() {
  struct stat info;
  const std::string path = ProgramDir + std::string("ups_shut.scr");
  return stat(path.c_str(), &info) != 0 ? missing(errno) : fault_of(info);
}
