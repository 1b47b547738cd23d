#pragma once

#include <map>
#include <string>
#include <string_view>

/// Where the language files, the demo configuration and the sources lie.
std::string source_dir();

/// The path of a program of this build: "harrier", "harrier-check", "harrier-languages",
/// "harrier_probe" or "check_language". The variable HARRIER_PROGRAMS may name a folder with others
/// of these names.
std::string built_program(const std::string& name);

/// The bytes of a file, none when it cannot be read.
std::string read_file(const std::string& path);

/// The value of a key as it stands in the text of a configuration file, with its quotes if it has
/// any. Empty when the section or the key is not there.
std::string ini_value(std::string_view text, std::string_view section, std::string_view key);

/// The text of a configuration file with another value for one of its keys. A missing section is
/// added at the end. The value includes the quotes of a text.
std::string with_value(std::string_view text, const std::string& section, const std::string& key,
                       std::string_view value);

/// A folder of its own for one case: the program as "harrier" (a link to the built one), the
/// language files and a configuration. Disappears with the object, after a failure too.
class Folder {
 public:
  using Files = std::map<std::string, std::string>;  // bytes by name

  /// With the whole demo configuration.
  Folder();

  /// With these files and no other configuration. A name that a language file has replaces it.
  explicit Folder(const Files& files);

  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  /// Makes it the folder of the program's functions that a case calls itself.
  void use() const;

  std::string path() const { return path_; }  // without a slash at its end
  std::string path(std::string_view name) const { return path_ + "/" + std::string(name); }

  void write(std::string_view name, std::string_view bytes) const;  // "#!" begins a program, and
                                                                    // "vi" is one
  std::string read(std::string_view name) const;  // throws when there is no such file
  void remove(std::string_view name) const;

  /// Everything in the folder but the program and the language files: compare two of these to learn
  /// what a run has changed.
  Files files() const;

  /// Makes `files()` these, whatever was there before.
  void hold(const Files& files) const;

  /// Runs commands of bash in the folder, up to the first one that fails. They find the commands
  /// that we install there, and the sources in "$source". Returns the exit status.
  int run(const std::string& commands) const;

 private:
  std::string path_;
};
