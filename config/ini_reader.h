#pragma once

#include <cstdint>
#include <string_view>

#include "config/families.h"
#include "config/fields.h"

/// The reader of every text file of the service.
///
/// A file is read line by line, in pieces of at most 298 characters, line feed included. A line
/// that is empty or begins with ";", a blank or the character BEL is skipped. "[name]" opens a
/// section; after an unknown name the previous section stays open. Any other line is "key=value",
/// spelled exactly, without blanks around the key. A double quote at the start of a value is left
/// out. A value, quoted or not, ends before the next double quote or the line feed, whichever comes
/// first. What the reader does not understand it skips without a message.

/// The number of the open section, 255 until the first header of the run. It is not reset between
/// files: lines before the first header of a file go to the section that has this number there.
extern std::uint8_t actual_section;

/// The number of the group whose file is being read, 0 to 9. `LoadGroupsINI` sets it.
extern std::uint8_t g_index;

/// The value that `FillVar` is to store, without quotes and line end.
extern const char* p_s;

/// Reads `path` into `INI`; `file` (an `IniFile`) says which file of the service it is. Returns 0,
/// or 1 when it cannot be opened, which changes nothing, or not read to its end. What the file was
/// is noted for the save (`config/known_files.h`).
int EncodeINIFile(int file, const char* path);

/// Stores the value at `p_s` in `INI`, as key number `key` of section `section` of a file. A text
/// is cut to the width of its field. A number is read as `atoi` does and cut to the 8 or 16 bits of
/// its field. A value without a place in the record is dropped.
void FillVar(int file, int section, int key);

/// What the reader made of a piece of a line.
enum class Fate : std::uint8_t {
  skipped,      // it is empty, or begins with ";", a blank or BEL
  opened,       // the header of a section that the file can have
  not_opened,   // the header of another section, or a header without "]"
  orphan,       // it stands before the first header of the run
  no_key,       // it has no "="
  unknown_key,  // in the row of key names that was in use
  no_room,      // the record has no place for the value
  taken,        // the value is in the record
};

/// A piece of a line, as its reader tells it. The views and pointers end with the call.
struct ReadPiece {
  int number = 0;          // of the line, from 1 on
  bool continues = false;  // the line was too long, and this is not its first piece
  std::string_view bytes;  // as they are in the file, with the line feed
  std::string_view line;   // the part of them that counts: up to a NUL byte or the line feed
  Fate fate = Fate::skipped;
  int section = 0;  // the one that is open now
  const Family* family =
      nullptr;                   // of this section, null when the file can have none of its number
  int index = 0;                 // of the section in its family
  int key = -1;                  // of `no_room` and `taken`
  bool own_names = true;         // of these: the key is named as the keys of this family are
  std::string_view written;      // of these: all that follows "="
  std::string_view value;        // of these, without quotes
  const Field* field = nullptr;  // of `taken`
  const void* entry = nullptr;   // of `taken`: what holds the field, with the value in it
};

/// Is told of every piece of every file. Null unless somebody wants to know; the editor does not.
extern void (*piece_listener)(int file, const ReadPiece& piece);
