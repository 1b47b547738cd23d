#pragma once

#include <string>
#include <string_view>

/// What the command says, on standard output and standard error.

/// Prints to standard output. The first failure is kept for `finish_output`.
void put_out(std::string_view text);

/// Sends what has been printed. Returns 0, or the errno of the first failure so far.
int finish_output();

/// Says a sentence on standard error, after the name of the program. The text may hold any bytes.
void complain(const std::string& sentence);
