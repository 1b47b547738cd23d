#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The numbered texts of the menus, and the loader of the files that hold them. `lang/text_ids.h`
/// names the numbers.

constexpr int text_count = 1100;
constexpr std::size_t text_size = 101;  // with the terminator

/// The texts. Every entry points to its own `text_size` bytes from `AllocText` until `FreeText`.
/// Loading a language rewrites these bytes in place, so pointers to a text stay valid.
extern char* LangText[text_count];

/// Returns text `number` as it is shown, without what `printable` removes. Whoever shows a text
/// takes it from here: the table holds the bytes of the file, which a terminal might obey.
std::string shown_text(int number);

/// The version of the file that was loaded last, or empty. The file says it before its section.
extern char LangFileVersion[32];

/// Words that only other programs of the family use. Loading `merlin` or `skylark` fills them.
extern char LM[50][100];
extern char sys_mess[20][30];

/// The programs that have a section of their own in the language files.
enum LanguageProgram { merlin = 1, osprey, harrier, skylark, wren };

/// A line of a language file comes in pieces of at most so many characters (`LineReader::next`).
constexpr std::size_t language_line_limit = 298;

/// Returns the program whose section begins with this piece of a line, as `next` returned it, or 0.
int section_program(std::string_view piece);

/// Allocates the texts and fills in their defaults, "Text 000" and so on. Returns 0, or 1 when
/// there is no memory.
int AllocText();

/// The name of a language file: `lang_NN.ini`, or `lang1_NN.ini` for `skylark`. NN is `language` in
/// two digits. A number below 0 has a minus sign.
std::string language_file_name(int program, signed char language);

/// Loads the section of `program` from the file of a language beside the program.
///
/// Each text has a line of its own, `String000="..."` and so on, in strict order. The first line
/// follows the section's header. A line that is not the next text ends the section, and the
/// remaining texts stay as they are. At the end of the file the remaining texts become defaults.
///
/// Returns 0 when the section was found, 1 when the file cannot be opened, 2 when it does not have
/// the section. After 1 and 2 no text has changed.
int LoadText(int program, signed char language);

/// Loads the section of `program` from the file `path`, as `LoadText` does.
int LoadTextFile(int program, const char* path);

/// A line of the section, as `LoadText` tells it. The view ends with the call.
struct ReadText {
  int line = 0;            // in the file, from 1 on
  int number = 0;          // of the text that must be here
  std::string_view bytes;  // without the line end; of a long line its first 298 bytes
  bool stored = false;     // otherwise the section ends here
};

/// Is told of every line of the section. Null unless somebody wants to know; the editor does not.
extern void (*text_listener)(const ReadText& text);

/// Releases the texts. The table must not be read afterwards.
void FreeText();
