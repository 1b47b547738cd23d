#pragma once

#include <cstdint>

/// The reader of every text file of the service.
///
/// A file is read line by line, in pieces of at most 298 characters, line feed included. A line
/// that is empty or begins with ";", a blank or the character BEL is skipped. "[name]" opens a
/// section; an unknown name leaves the section before it open. Any other line is "key=value",
/// spelled exactly, without blanks around the key. A value in double quotes ends at the second one,
/// another one at the line feed. Whatever is not understood is skipped without a message.

/// The number of the open section, 255 before the first one of the run. It is not reset between
/// files: lines before the first header of a file go to the section of the same number.
extern std::uint8_t actual_section;

/// The number of the group whose file is being read, 0 to 9. The loader of the groups sets it.
extern std::uint8_t g_index;

/// The value that `FillVar` is to store, without quotes and line end.
extern const char* p_s;

/// Reads the file `path` of kind `kind` (a `FileKind`) into `INI`. Returns 0, or 1 when the file
/// cannot be opened; then nothing has changed.
int EncodeINIFile(int kind, const char* path);

/// Stores the value at `p_s` as key number `key` of section `section` into `INI`: a text cut to the
/// width of its field, a number as `atoi` reads it and cut to the field's 8 or 16 bits. What the
/// record has no room for is dropped.
void FillVar(int kind, int section, int key);
