#pragma once

#include <map>
#include <string>
#include <string_view>

/// A folder of its own for the files that a fuzz target feeds to the program, beside which the
/// program believes to lie (`ProgramDir`). It is made in TMPDIR, which should be in memory.
class Scratch {
 public:
  using Files = std::map<std::string, std::string>;  // bytes by name

  Scratch();
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string path(std::string_view name) const { return path_ + std::string(name); }
  void write(std::string_view name, std::string_view bytes) const;
  Files files() const;
  void clear() const;

 private:
  std::string path_;  // with a slash at its end
};

/// The input as text.
std::string_view text_of(const unsigned char* data, std::size_t size);

/// Ends the run with a finding unless `holds`; `claim` says what should have held.
void require(bool holds, const char* claim);
