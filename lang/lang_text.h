#pragma once

#include <cstddef>

/// The numbered texts of the menus, and the loader of the files that hold them. `lang/text_ids.h`
/// names the numbers.

constexpr int text_count = 1100;
constexpr std::size_t text_size = 101;  // with the terminator

/// The texts. Every entry points to its own `text_size` bytes from `AllocText` until `FreeText`;
/// loading a language rewrites them in place, so pointers into the table stay valid.
extern char* LangText[text_count];

/// The version that the file loaded last names before its section, or empty.
extern char LangFileVersion[32];

/// Words that only other programs of the family use; filled when their sections are loaded.
extern char LM[50][100];
extern char sys_mess[20][30];

/// The programs that have a section of their own in the language files.
enum LanguageProgram { merlin = 1, osprey, harrier, skylark, wren };

/// Allocates the texts and fills in their defaults, "Text 000" and so on. Returns 0, or 1 when
/// there is no memory.
int AllocText();

/// Loads the section of `program` from the file of language `language` (two digits; the sibling
/// program has files of its own). A text has its own line, `String000="..."` and so on, in strict
/// order from the line behind the section's header: the first line that is not the next text ends
/// the section, and the texts from there on stay as they are. Where the file ends, the rest become
/// defaults. Returns 0 when the section was found, 1 when the file cannot be opened, 2 when it does
/// not have the section; then no text has changed.
int LoadText(int program, signed char language);

/// Releases the texts. The table must not be read afterwards.
void FreeText();
