#include "tests/folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace {

constexpr const char* program_name = "harrier";

bool is_language(const std::string& name) { return name.starts_with("lang"); }

/// Where the value of a key lies: from behind the "=" to the end of its line.
struct Span {
  std::size_t first = std::string_view::npos;
  std::size_t length = 0;
  bool found() const { return first != std::string_view::npos; }
};

Span find_value(std::string_view text, std::string_view section, std::string_view key) {
  const std::string header = "[" + std::string(section) + "]";
  bool inside = false;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    std::string_view line = text.substr(at, end - at);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.starts_with('[')) inside = line == header;
    if (inside && line.starts_with(key) && line.substr(key.size()).starts_with('=')) {
      return {at + key.size() + 1, line.size() - key.size() - 1};
    }
    at = end + 1;
  }
  return {};
}

}  // namespace

std::string source_dir() { return HARRIER_SOURCE_DIR; }

std::string read_file(const std::string& path) {
  // Not by iterators: they throw when a file of a process that has just ended cannot be read.
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

std::string demo(std::string_view name) {
  std::string bytes = read_file(source_dir() + "/demo/" + std::string(name));
  EXPECT_FALSE(bytes.empty()) << "the demo configuration has no " << name;
  return bytes;
}

std::string ini_value(std::string_view text, std::string_view section, std::string_view key) {
  const Span at = find_value(text, section, key);
  return at.found() ? std::string(text.substr(at.first, at.length)) : "";
}

std::string with_value(std::string_view text, std::string_view section, std::string_view key,
                       std::string_view value) {
  std::string changed(text);
  const Span at = find_value(text, section, key);
  if (at.found()) {
    changed.replace(at.first, at.length, value);
  } else {
    ADD_FAILURE() << "no key " << key << " in section " << section;
  }
  return changed;
}

Folder::Folder() : Folder(Files{}) {
  for (const auto& entry : fs::directory_iterator(source_dir() + "/demo")) {
    write(entry.path().filename().string(), read_file(entry.path()));
  }
}

Folder::Folder(const Files& files) {
  std::string name = fs::temp_directory_path() / "harrier.XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), name);
  }
  path_ = name;
  fs::create_symlink(HARRIER_PROGRAM, path(program_name));
  for (const auto& entry : fs::directory_iterator(source_dir() + "/languages")) {
    write(entry.path().filename().string(), read_file(entry.path()));
  }
  for (const auto& [file, bytes] : files) write(file, bytes);
}

Folder::~Folder() {
  std::error_code ignored;
  fs::permissions(path_, fs::perms::owner_all, ignored);  // a case may have taken them away
  fs::remove_all(path_, ignored);
}

void Folder::write(std::string_view name, std::string_view bytes) const {
  std::ofstream out(path(name), std::ios::binary | std::ios::trunc);
  out << bytes << std::flush;
  if (!out) throw std::runtime_error("cannot write " + path(name));
}

std::string Folder::read(std::string_view name) const {
  EXPECT_TRUE(fs::is_regular_file(path(name))) << "there is no file " << name;
  return read_file(path(name));
}

bool Folder::has(std::string_view name) const { return fs::exists(path(name)); }

void Folder::remove(std::string_view name) const { fs::remove_all(path(name)); }

std::vector<std::string> Folder::names() const {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Folder::Files Folder::files() const {
  Files files;
  for (const std::string& name : names()) {
    if (name == program_name || is_language(name)) continue;
    files[name] = fs::is_regular_file(path(name)) ? read_file(path(name)) : "";
  }
  return files;
}

std::string Folder::value(std::string_view name, std::string_view section,
                          std::string_view key) const {
  return ini_value(read(name), section, key);
}

void Folder::set(std::string_view name, std::string_view section, std::string_view key,
                 std::string_view value) const {
  write(name, with_value(read(name), section, key, value));
}
