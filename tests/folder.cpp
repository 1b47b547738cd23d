#include "tests/folder.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "tests/tables.h"
#include "tui/diag.h"

namespace fs = std::filesystem;

namespace {

/// The value of a key within the text, without a place when there is none.
std::string_view find_value(std::string_view text, std::string_view section, std::string_view key) {
  const std::size_t header = text.find("[" + std::string(section) + "]");
  if (header == std::string_view::npos) return {};
  const std::string_view lines = text.substr(header, text.find("\n[", header) - header);
  const std::size_t line = lines.find("\n" + std::string(key) + "=");
  if (line == std::string_view::npos) return {};
  const std::string_view value = lines.substr(line + key.size() + 2);
  return value.substr(0, value.find_first_of("\r\n"));
}

}  // namespace

std::string source_dir() { return HARRIER_SOURCE_DIR; }

std::string built_program(const std::string& name) {
  const char* const other = std::getenv("HARRIER_PROGRAMS");
  return std::string(other == nullptr ? HARRIER_PROGRAMS : other) + "/" + name;
}

std::string read_file(const std::string& path) {
  // Not by iterators: they throw when a file of a process that has just ended cannot be read.
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

std::string ini_value(std::string_view text, std::string_view section, std::string_view key) {
  return std::string(find_value(text, section, key));
}

std::string with_value(std::string_view text, const std::string& section, const std::string& key,
                       std::string_view value) {
  std::string changed(text);
  const std::string header = "[" + section + "]\n";
  if (changed.find(header) == std::string::npos) changed += "\n" + header;
  if (find_value(changed, section, key).data() == nullptr) {
    changed.insert(changed.find(header) + header.size(), key + "=\n");
  }
  const std::string_view old = find_value(changed, section, key);
  return changed.replace(static_cast<std::size_t>(old.data() - changed.data()), old.size(), value);
}

Folder::Folder() : Folder(demo_with("")) {}

Folder::Folder(const Files& files) {
  std::string name = fs::temp_directory_path() / "harrier.XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), name);
  }
  path_ = name;
  fs::create_symlink(built_program("harrier"), path("harrier"));
  fs::copy(source_dir() + "/languages", path_);
  for (const auto& [file, bytes] : files) write(file, bytes);
}

Folder::~Folder() {
  std::error_code ignored;
  fs::permissions(path_, fs::perms::owner_all, ignored);  // a case may have taken them away
  fs::remove_all(path_, ignored);
}

void Folder::use() const { std::snprintf(ProgramDir, sizeof ProgramDir, "%s/", path_.c_str()); }

void Folder::write(std::string_view name, std::string_view bytes) const {
  std::ofstream out(path(name), std::ios::binary | std::ios::trunc);
  out << bytes << std::flush;
  if (!out) throw std::runtime_error("cannot write " + path(name));
  if (bytes.starts_with("#!") || name == "vi") fs::permissions(path(name), fs::perms::owner_all);
}

std::string Folder::read(std::string_view name) const {
  if (!fs::is_regular_file(path(name))) throw std::runtime_error("no file " + path(name));
  return read_file(path(name));
}

void Folder::remove(std::string_view name) const { fs::remove_all(path(name)); }

Folder::Files Folder::files() const {
  Files files;
  for (const auto& entry : fs::directory_iterator(path_)) {
    const std::string name = entry.path().filename();
    if (name == "harrier" || name.starts_with("lang")) continue;
    files[name] = entry.is_regular_file() ? read_file(entry.path()) : "";
  }
  return files;
}

void Folder::hold(const Files& files) const {
  const Files present = this->files();
  for (const auto& [name, bytes] : present) {
    if (!files.contains(name)) remove(name);
  }
  for (const auto& [name, bytes] : files) {
    if (!present.contains(name) || present.at(name) != bytes) write(name, bytes);
  }
}

int Folder::run(const std::string& commands) const {
  write("commands", "source=" + source_dir() + "\nPATH=.:$PATH\n" + commands + "\n");
  for (const char* const name : {"harrier-check", "harrier-languages"}) {
    if (!fs::exists(path(name))) fs::create_symlink(built_program(name), path(name));
  }
  return WEXITSTATUS(std::system(("cd " + path() + " && bash -eu commands").c_str()));
}
