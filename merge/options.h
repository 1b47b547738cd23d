#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The command line of harrier-languages.

enum class Task : std::uint8_t { show, apply, help, version };

struct Options {
  Task task = Task::show;
  /// Where the packages install our language files. Those in /etc/harrier may be edited, and the
  /// files of the service may be links to them.
  std::string from = "/usr/share/harrier/languages";
  std::string folder = {};  // of the service; empty for that of the program
};

/// Reads the command line. Returns 0, or EINVAL after a sentence on standard error.
int read_options(int count, char* arguments[], Options& options);

extern const std::string_view help_text;
