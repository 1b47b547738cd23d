#pragma once

#include <string>
#include <string_view>

/// What the commands beside the editor have in common: how they start, speak, refuse and end.

/// The exit statuses that all of them have. 1 means something else for each.
constexpr int good = 0;
constexpr int trouble = 2;  // wrong usage, or something could not be done

/// Runs the command `name` and returns the exit status of the program: that of `run`, or `trouble`
/// after a sentence when memory ends or standard output fails. `run` takes the arguments of `main`.
int run_command(const char* name, int (*run)(int count, char* arguments[]), int count,
                char* arguments[]);

/// Prints to standard output. The first failure is kept for `finish_output`.
void put_out(std::string_view text);

/// Sends what has been printed. Returns 0, or the errno of the first failure so far.
int finish_output();

/// Says a sentence on standard error, after the name of the command and after all that has been
/// printed. The sentence may hold any bytes.
void complain(std::string_view sentence);

/// Complains. Returns `trouble`.
int fail(std::string_view sentence);

/// Complains, and points to --help. Returns EINVAL.
int refuse(std::string_view sentence);

/// Refuses what getopt_long has answered with `letter`: ':' for an option that lacks its `value`,
/// '?' for an unknown one. The long options have letters beyond all bytes.
int refuse_option(int letter, char* arguments[], std::string_view value);
