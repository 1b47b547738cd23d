#pragma once

#include <span>
#include <string_view>

#include "kit/rows.h"
#include "tui/screen.h"

/// Draws and runs the screens. A screen that others open has two functions: `print_x` draws it with
/// the arrow on item `selected`, from 1 on, and `x` runs it until the operator leaves it.

/// A list before the rows of a screen: its lines are items 1 to `count`.
struct List {
  int count = 0;

  /// Prints what follows the number of the line. `item` counts from 1 on every page.
  void (*line)(const Subject&, int item) = nullptr;
  /// What Enter does.
  void (*enter)(const Subject&, int item) = nullptr;

  bool leaves = false;    // Enter leaves the screen as well: the list is a choice
  bool restarts = false;  // the numbers begin with 1 on every page; otherwise with `first` plus 1
};

struct Screen {
  int start_row = 0;  // 0 to 4, or `compact`
  text::Id title = text::product_title;
  List list = {};
  std::span<const Row> rows = {};

  /// The rows where they depend on the state of the subject.
  std::span<const Row> (*rows_of)(const Subject&) = nullptr;
  /// The entry that holds the fields of the rows: `INI1` itself unless this says otherwise.
  void* (*entry)(const Subject&) = nullptr;
  /// The title where it depends on the subject.
  text::Id (*title_of)(const Subject&) = nullptr;
  /// Draws another frame, of `frame_lines` lines.
  void (*frame)(const Subject&) = nullptr;
  int frame_lines = 5;
  int arrow_column = 3;

  /// Where an arrow key leads from item `from`. `to` is the next item that may be chosen.
  int (*step)(const Subject&, int from, int to) = nullptr;
  /// Called after the command of a row. Returns the arrow's next item, 0 to leave.
  int (*entered)(const Subject&, int item) = nullptr;
};

/// Draws a screen with the arrow on item `selected`.
void print_screen(const Screen& screen, const Subject& subject, int selected);

/// Runs a screen until an item leaves it.
void run_screen(const Screen& screen, const Subject& subject = {});

// What a line is made of. These functions count the columns that the line has used. A line that is
// cut ends with ">" in its last column, which is the last but one of the terminal.

/// Starts a new line.
void begin_line();

/// Prints as much of `text` as the line has room for. `goes_on` says that something follows, which
/// may be cut as well.
void print_cut(std::string_view text, bool goes_on = false);

/// The same in the colour of values, without the control characters of `text`.
void print_value(std::string_view text, bool goes_on = false);

/// Prints a text before something of `reserve` columns that must stay whole. Here ">" stands at the
/// end of the text.
void print_before(int reserve, std::string_view text);

/// "[", the word for a flag in green or red, "]".
void print_flag(bool is_on, FlagWords words);
