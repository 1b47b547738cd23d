#include "tests/fuzz/scratch.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tui/diag.h"

namespace fs = std::filesystem;

Scratch::Scratch() {
  path_ = fs::temp_directory_path() / "harrier-fuzz.XXXXXX";
  require(mkdtemp(path_.data()) != nullptr, "the folder for the files can be made");
  path_ += '/';
  require(path_.size() < sizeof ProgramDir, "the path of the folder is short enough");
  ProgramDir[path_.copy(ProgramDir, sizeof ProgramDir - 1)] = '\0';
}

Scratch::~Scratch() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

void Scratch::write(std::string_view name, std::string_view bytes) const {
  std::ofstream file(path(name), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  require(file.good(), "the input can be written to its file");
}

Scratch::Files Scratch::files() const {
  Files files;
  for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
    std::ifstream file(entry.path(), std::ios::binary);
    files[entry.path().filename()] = std::string(std::istreambuf_iterator<char>(file), {});
  }
  return files;
}

void Scratch::clear() const {
  for (const fs::directory_entry& entry : fs::directory_iterator(path_)) fs::remove(entry.path());
}

std::string_view text_of(const unsigned char* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "This should have held: %s\n", claim);
  std::abort();
}
