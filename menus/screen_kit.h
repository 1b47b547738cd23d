#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "config/fields.h"
#include "lang/text_ids.h"
#include "tui/screen.h"

/// The kit that the screens are built of: a screen is a table of rows, one for each line, rule
/// lines included, in the order of the screen. A screen that others open has two functions: one
/// runs it until the operator leaves it, and one whose name begins with "print_" draws it with the
/// arrow on item `selected`, from 1 on.

/// What a screen is about: the slot of a UPS, a schedule or a recipient, the number of a job or a
/// group; for what belongs to a group its event, and a part of that.
struct Subject {
  int index = 0;
  int event = 0;
  int part = 0;
};

enum class Act : std::uint8_t {
  rule,    // a line that is never chosen
  text,    // shows a text, Enter edits it
  number,  // shows a number, Enter edits it
  flag,    // shows the on or off word in brackets, Enter toggles
  custom,  // shows what `value` gives, Enter does what `open` or `enter` says
  open,    // only a label, Enter does what `open` or `enter` says
  back     // leaves the screen
};

/// The words for a flag.
enum class Words : std::uint8_t {
  yes_no,         // texts 316 and 317
  yes_no_letter,  // their first letters
  on_off          // texts 324 and 340
};

struct Row {
  Act act = Act::rule;
  const char* lead = "";  // what stands before the label, the six blanks for the arrow included
  text::Id label = text::back;
  Field field = {};  // where the value lies, counted from the screen's entry
  unsigned low = 0;  // bounds of a number
  unsigned high = 0;
  Words words = Words::yes_no;

  /// Whether the line is there at all; lines that are not take no place and no number.
  bool (*present)(const Subject&) = nullptr;
  /// Whether the arrow may rest here; otherwise the label is dimmed and the value hidden.
  bool (*live)(const Subject&) = nullptr;
  /// Whether the label is bright and the value shown, where that differs from `live`.
  bool (*shown)(const Subject&) = nullptr;

  /// The value to show instead of the field's; `bracketed` puts it into "[" and "]". For a flag it
  /// says whether it is on.
  std::string (*value)(const Subject&) = nullptr;
  bool (*is_on)(const Subject&) = nullptr;
  bool bracketed = false;
  /// Whether a colon stands between the label and the value.
  bool colon = true;

  /// Toggles a flag that is more than a field.
  void (*toggle)(const Subject&) = nullptr;
  /// Keeps other fields in step after an edit or a toggle.
  void (*settle)(const Subject&) = nullptr;
  /// What Enter does.
  void (*open)(const Subject&) = nullptr;
  /// The same for rows that may move the arrow: returns the item it stands on then, 0 to leave.
  int (*enter)(const Subject&, int item) = nullptr;
};

struct Screen {
  int start_row = 0;
  text::Id title = text::product_title;
  std::span<const Row> rows = {};

  /// Where the fields of the rows lie: the record itself unless this says otherwise.
  void* (*entry)(const Subject&) = nullptr;
  /// The title where it depends on the subject.
  text::Id (*title_of)(const Subject&) = nullptr;
  /// Draws another frame, which is `frame_lines` long instead of five.
  void (*frame)(const Subject&) = nullptr;
  int frame_lines = 5;
  int arrow_column = 3;

  /// Where an arrow key really leads, for the screens where that is not the next item that may be
  /// chosen: `to` is that item.
  int (*step)(const Subject&, int from, int to) = nullptr;

  /// A list in front of the rows: items 1 to `listed`. `list_line` prints what stands behind the
  /// line break; Enter does `list_enter`, which returns the item of the arrow then, 0 to leave.
  int listed = 0;
  void (*list_line)(const Subject&, int item) = nullptr;
  int (*list_enter)(const Subject&, int item) = nullptr;
};

/// Draws a screen with the arrow on `selected`.
void print_screen(const Screen& screen, const Subject& subject, int selected);

/// Runs a screen until an item leaves it.
void run_screen(const Screen& screen, const Subject& subject = {}, int selected = 1);

/// The columns of the number of a line, in a list of up to nine lines and in a longer one.
constexpr int short_number_columns = 10;
constexpr int number_columns = 11;

/// Prints the number of a line of a list in front of its text, so that the numbers of all lines end
/// below each other.
void print_list_number(int number, int columns = number_columns);

/// Prints a text behind `used` columns of its line, cut so that the line ends within 80 columns.
void print_cut(std::string_view text, int used);

/// The same in the colour of values.
void print_value(std::string_view text, int used);

/// "[", the word for a flag in green or red, "]".
void print_flag(bool is_on, Words words);

/// The word for a flag.
std::string flag_word(bool is_on, Words words);

/// Formats as printf does.
std::string format(const char* form, ...) __attribute__((format(printf, 1, 2)));

/// Edits a text in place on the value-entry screen. `size` is the width of the field in bytes.
void edit_text_field(text::Id label, char* bytes, std::size_t size);

/// Edits a number on the value-entry screen; returns it, or `current` when the entry is refused or
/// empty. `prompt_end` stands behind the bounds.
unsigned edit_number(text::Id label, unsigned current, unsigned low, unsigned high,
                     const char* prompt_end = "\t");

/// The pieces of these two, for editors that ask in their own way. `begin_entry` draws the screen
/// with the current value up to where the question goes and shows the cursor; `end_entry` hides it.
void begin_entry(text::Id label, std::string_view current);
void end_entry();

/// Asks for a line behind `prompt`, as `get_str` takes it, and ends the entry.
void ask_line(char* bytes, std::size_t size, const char* prompt);

/// `begin_entry` for the name of an entry of a list: in place of the rule two hints, text 336 and
/// the one that tells how to delete the entry.
void begin_name_entry(text::Id label, std::string_view current, text::Id deletion_hint);

/// Rings, shows a message for two seconds.
void show_refusal(text::Id message);
