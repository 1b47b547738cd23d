#pragma once

#include <string>

#include "config/families.h"

/// The form that every text file of the service is written in: three lines of header, then sections
/// of "key=number" and "key="text"" lines, each followed by an empty line.

/// Starts a file: the comment lines and the empty line behind them.
void write_file_header(std::string& out);

/// "[name]", with two digits of `number` behind the name of a numbered section.
void write_section_header(std::string& out, const Family& family, int number);

/// One "key=value" line.
void write_field(std::string& out, const Field& field, const void* entry);

/// All sections of one family whose entry 0 lies at `entries`, each with its empty line. Lists
/// leave out unused entries and number the others from 00. Empty values that have a default are
/// written with it; the entries themselves stay as they are.
void write_family(std::string& out, const Family& family, const void* entries);

/// Formats `INI` as a file of kind `kind` and replaces the file `name` in `ProgramDir`. When the
/// file has been written, the defaults of its values are stored in `INI` too. Returns 0 or the
/// errno of what failed.
int save_file(int kind, const char* name);
