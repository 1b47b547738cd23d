#pragma once

#include <string>
#include <string_view>

/// The parts of every screen: colours, moves of the cursor, rule lines, and centred titles in a
/// frame. The frame is 70 columns wide in every language, and narrower where the terminal is.

/// The entries of `seq_escape`, control sequences of ECMA-48 and of the VT100 family.
namespace escape {
enum Index {
  clear_screen,
  hide_cursor,
  show_cursor,
  black_background,
  normal,  // bright white, the colour of all text that has no other
  dim,     // labels of items that cannot be chosen at present
  value,   // bright cyan: what a setting holds, and what is being typed
  on,      // bright green
  off,     // bright red
  off_mark
};
}  // namespace escape

/// Byte 0 of an entry is the number of bytes to send. The bytes follow.
extern const signed char seq_escape[10][11];

/// Prints entry `index`, 0 to 9. Clearing the screen also calls `begin_screen`.
void print_escapeseq(int index);

/// Moves the cursor to row `row + row_offset` and to `column`, each 0 to 99 and printed in two
/// digits. The top left corner is 1, 1. Terminals read 0 as 1.
void cursor_gotopos(int row, int column, int row_offset);

/// Starts a new line and draws the width of a frame on it: a rule of "-" (kind 0), of "*" (kind 1),
/// of "#" (kind 2), or the empty line of a frame (kind 3). Kind 4 draws the asterisks of kind 1,
/// but on the current line. Any other kind only starts a new line.
void print_line(int kind);

/// Draws one line of a frame, on a new line, with `text` centred in 62 columns, or in fewer when
/// the frame is narrower. Cuts a longer text as `cut_marked` does. If one column is left over, it
/// goes to the right.
void print_center(std::string_view text);

/// Starts a new line and prints `text`, cut as `cut_marked` does, as an item without a number.
void print_item(std::string_view text);

/// Centres `text` in `width` columns with copies of `fill`, and returns `text`. Each copy counts as
/// one column. For a width of 200 or more the text stays as it is.
std::string& center(std::string& text, int width, std::string_view fill);

/// Pads `text` on the right to `width` columns with copies of `fill`, and returns `text`. Each copy
/// counts as one column. A text of that width or more stays as it is.
std::string& dopln(std::string& text, int width, std::string_view fill);

/// Rings the bell of the terminal.
void beep();

/// A screen with a `start_row` of 0 to 4 has a frame of five lines below that row. A `compact`
/// screen has a frame of three lines at the top, because its items would not fit into 24 rows
/// otherwise.
constexpr int compact = -1;

/// Clears the screen and draws the frame with `title`.
void print_frame(int start_row, std::string_view title);

/// Returns the row above the first item. Item 1 is in the next row.
int arrow_base(int start_row);

/// Draws the rule below the last item, which is in `last_row`, and so ends the screen. A terminal
/// with fewer rows has scrolled by now. From here on the arrow follows its item.
void print_frame_end(int start_row, int last_row);

/// Returns where a row of the current screen is after that scrolling: 0 or less means out of sight.
int row_in_sight(int row);

/// Draws the arrow beside item `item`, in row `base + item`, if that row is in sight.
void print_arrow(int item, int column, int base);

/// Moves the arrow from one item to another. Nothing else on the screen changes.
void move_arrow(int from, int to, int column, int base);
