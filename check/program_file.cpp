#include "check/program_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include "tui/diag.h"

namespace {

using Names = std::vector<std::string>;

/// Whether no shell gives this letter of a path a meaning.
bool is_plain(char letter) {
  const auto within = [letter](char first, char last) { return letter >= first && letter <= last; };
  return within('a', 'z') || within('A', 'Z') || within('0', '9') ||
         std::string_view("/._-+,:@=").find(letter) != std::string_view::npos;
}

/// The names on an absolute path. None for a path that is relative or leads upwards.
Names names_on(std::string_view path) {
  if (!path.starts_with('/')) return {};
  Names names;
  while (!path.empty()) {
    path.remove_prefix(1);
    const std::string_view name = path.substr(0, path.find('/'));
    if (name == "..") return {};
    if (!name.empty() && name != ".") names.emplace_back(name);
    path.remove_prefix(name.size());
  }
  return names;
}

/// The folder as the operator calls it, and without symbolic links. Found once for all programs.
const std::vector<Names>& names_of_folder() {
  static std::string folder;
  static std::vector<Names> all;
  if (folder == ProgramDir) return all;
  folder = ProgramDir;
  all.clear();
  char here[PATH_MAX];
  if (folder.starts_with('/'))
    all.push_back(names_on(folder));
  else if (getcwd(here, sizeof here) != nullptr)
    all.push_back(names_on(std::string(here) + "/" + folder));
  if (realpath(ProgramDir, here) != nullptr) all.push_back(names_on(here));
  return all;
}

/// The names that lead from the folder to a file in it. None for other files.
Names names_inside(const std::string& path) {
  // Most programs are elsewhere, and their paths do not even have the folder's own name.
  const std::vector<Names>& folders = names_of_folder();
  const bool elsewhere = std::none_of(folders.begin(), folders.end(), [&](const Names& folder) {
    return folder.empty() || path.find(folder.back()) != std::string::npos;
  });
  if (elsewhere) return {};
  const Names names = names_on(path);
  for (const Names& folder : folders) {
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
  const std::string program = command.substr(0, command.find(' '));
  if (!std::all_of(program.begin(), program.end(), is_plain)) return "";
  // The service may take the whole text for the name of the program.
  const std::string fault = fault_of_path(program);
  return fault.empty() || fault_of_path(command).empty() ? "" : fault;
}

std::string fault_of_script() {
  struct stat info;
  const std::string path = ProgramDir + std::string("ups_shut.scr");
  return stat(path.c_str(), &info) != 0 ? missing(errno) : fault_of(info);
}
