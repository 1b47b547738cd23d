#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The command line of harrier-check.

enum class Task : std::uint8_t { check, ask, explain, list, help, version };

struct Options {
  Task task = Task::check;
  bool json = false;
  bool strict = false;  // warnings count for the exit status too
  bool quiet = false;   // no line of counts
  std::string as = {};  // the name that files are taken for, empty for their own names
  std::string explained = {};
  std::vector<std::string> places = {};  // a folder, or files
};

/// Reads the command line. Returns 0, or EINVAL after a sentence on standard error.
int read_options(int count, char* arguments[], Options& options);

extern const std::string_view help_text;
