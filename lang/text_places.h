#pragma once

#include "lang/text_ids.h"

/// Where the texts of `lang/texts.inc` stand on the screen, and how much of a line they may take.
/// The check of language files reads it; the program draws whatever its language file holds.
namespace text {

/// What else takes columns of a text's line.
enum class Beside {
  nothing,
  yes_or_no,   // the longer of the words `yes` and `no`, in brackets after a label
  on_or_off,   // the longer of the words `flag_on` and `flag_off`, in brackets after a label
  enter_time,  // the text `enter_time`, before this text in brackets
  answers,     // both answers to a question, as `yesnostr` builds them
};

struct Place {
  int columns;       // for the text and what stands beside it, 1 to 79; 0: 100 bytes, any columns
  const char* what;  // the place, as a message of the check calls it
  Beside beside = Beside::nothing;
  bool stored = false;  // a job stores the text; no value of a file can contain a double quote
};

struct Row {
  Id id;
  const char* name;
  const Place* place;
};

/// The row of text `number`, or null when no screen uses the number. Rows live as long as the
/// program.
const Row* find_row(int number);

}  // namespace text
