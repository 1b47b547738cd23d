#pragma once

#include <string>

#include "config/families.h"

/// The form of every text file of the service: two comment lines and an empty line, then the
/// sections. A section is its header, "key=number" and "key="text"" lines, and an empty line. The
/// functions `write_...` append to `out`; no file changes before it is formatted as a whole.

/// Whether a save writes this entry of the family. Of a list that leaves out unused entries it
/// writes those whose first value is neither empty nor 0.
bool is_written(const Family& family, const void* entry);

/// Calls `visit(index, number, entry)` for each entry of a family that a save writes. `number` is
/// that of its section then. `entries` is where entry 0 lies.
template <typename Visit>
void each_written(const Family& family, const void* entries, Visit visit) {
  int number = 0;
  for (int i = 0; i < family.stored; ++i) {
    const char* entry =
        static_cast<const char*>(entries) + static_cast<std::size_t>(i) * family.size;
    if (is_written(family, entry)) visit(i, number++, entry);
  }
}

/// Appends the comment lines and the empty line that start a file.
void write_file_header(std::string& out);

/// Appends "[name]"; the name of a numbered section is followed by two digits of `number`.
void write_section_header(std::string& out, const Family& family, int number);

/// Appends a "key=value" line.
void write_field(std::string& out, const Field& field, const void* entry);

/// Appends all sections of a family whose entry 0 lies at `entries`. Lists leave out unused entries
/// and number the others from 00. An empty value that has a default is written with it; the entries
/// themselves stay as they are.
void write_family(std::string& out, const Family& family, const void* entries);

/// Formats `INI` as `file` (an `IniFile`, but not `group_file`) and writes it as `put_file` does:
/// in `SaveINI` it is staged only. Returns 0 or the errno of what failed. After success the
/// defaults that were written are in `INI` too.
int save_file(int file, const char* name);
