#pragma once

#include <string>
#include <string_view>

/// What every screen is drawn with: colours, the cursor, rule lines and framed, centred titles. The
/// frame is 70 columns wide, whatever the language.

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

/// Byte 0 of an entry is the number of bytes to send, the bytes follow.
extern const signed char seq_escape[10][11];

/// Sends entry `index`, 0 to 9. Clearing the screen begins a new one, as `begin_screen` says.
void print_escapeseq(int index);

/// Moves the cursor to row `row + row_offset` and to `column`, two digits each, 0 to 99. The top
/// left corner is 1, 1, and terminals take 0 for 1.
void cursor_gotopos(int row, int column, int row_offset);

/// One rule of 70 characters on a new line: of "-" (0), "*" (1), "#" (2), or the empty line of a
/// frame (3). Kind 4 is 1 on the present line. Any other kind only starts a new line.
void print_line(int kind);

/// One line of a frame with `text` centred in its 62 columns, cut to them; an odd column left over
/// is on the right.
void print_center(std::string_view text);

/// Centres `text` in `width` columns with copies of `fill`, which is taken for one column, and
/// returns it. Nothing happens for a width of 200 or more.
std::string& center(std::string& text, int width, std::string_view fill);

/// Fills `text` up on the right to `width` columns with copies of `fill`, and returns it. A text of
/// that width or more stays as it is.
std::string& dopln(std::string& text, int width, std::string_view fill);

/// Rings the bell of the terminal.
void beep();

/// Where a screen begins: its cursor starts in this row, 0 to 4, with a frame of five lines below.
/// The screens whose items would not fit below that frame into 24 rows begin at once, with a frame
/// of three lines.
constexpr int compact = -1;

/// Clears the screen and draws the frame with `title`.
void print_frame(int start_row, std::string_view title);

/// What lies between the number of an item, from 1 on, and its row on the screen.
int arrow_base(int start_row);

/// Draws the rule below the last item, which is in `last_row`. This is the end of the screen: a
/// terminal with fewer rows has scrolled by now, and the arrow goes where its item has gone.
void print_frame_end(int start_row, int last_row);

/// Where a row of the present screen is after that, 0 or less when it is out of sight.
int row_in_sight(int row);

/// Draws the arrow beside item `item`, counted from `base`, if that is in sight.
void print_arrow(int item, int column, int base);

/// Moves the arrow from one item to another; nothing else on the screen changes.
void move_arrow(int from, int to, int column, int base);
