#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "config/fields.h"
#include "lang/text_ids.h"

/// The tables that the screens are made of. One line of a screen is one row of its table, rule
/// lines included, in the order of the screen. `kit/screens.h` draws and runs them.

struct ActionEdit;
struct Screen;

/// What a screen is about. Each screen uses the members that it needs. All count from 0.
struct Subject {
  int ups = 0;        // slot of a UPS
  int schedule = 0;   // schedule entry
  int group = 0;      // group of UPSs
  int event = 0;      // event of the UPSs, or of `group`
  int condition = 0;  // condition of that event
  int member = 0;     // place in `group`
  int first = 0;      // entry that the first line of a list shows

  ActionEdit* edit = nullptr;  // the action in its editor, which owns it
};

/// A question about the subject of a screen.
using Test = bool (*)(const Subject&);

/// What Enter does on a row: it calls a function or opens a screen about the same subject.
struct Command {
  constexpr Command() = default;
  constexpr Command(void (*function)(const Subject&)) : run(function) {}
  constexpr Command(int (*function)(const Subject&, int)) : go(function) {}
  constexpr Command(const Screen* opened) : screen(opened) {}

  void (*run)(const Subject&) = nullptr;
  int (*go)(const Subject&, int item) = nullptr;  // returns the arrow's next item, 0 to leave
  const Screen* screen = nullptr;
};

/// A command that calls `Function`, with members of the subject as its arguments:
/// `opens<ups_param, &Subject::ups>`.
template <auto Function, int Subject::*... Members>
void opens(const Subject& subject) {
  Function(subject.*Members...);
}

enum class Act : std::uint8_t {
  rule,    // a line that is never chosen
  remark,  // a text that is never chosen
  words,   // shows a text, Enter edits it
  number,  // shows a number, Enter edits it
  flag,    // shows the on or off word in brackets, Enter toggles it
  custom,  // shows what a function returns, Enter does the command
  open,    // only a label, Enter does the command
  back     // leaves the screen
};

/// The words for a flag.
enum class FlagWords : std::uint8_t {
  yes_no,         // texts 316 and 317
  yes_no_letter,  // their first letters
  on_off          // texts 324 and 340
};

/// One line of a screen. The builders below make rows; the functions with a dot add what is
/// unusual.
struct Row {
  Act act = Act::rule;
  const char* number = "";  // as on the screen, "6.2"; the digits before the dot are aligned
  text::Id label = text::back;
  Field field = {};  // counted from the screen's entry
  unsigned low = 0;  // bounds of a number
  unsigned high = 0;
  const char* mark = "";                           // after the number
  text::Id (*label_of)(const Subject&) = nullptr;  // instead of `label`
  FlagWords flag_words = FlagWords::yes_no;
  std::string (*value)(const Subject&) = nullptr;  // of a custom row
  Test is_on = nullptr;                            // instead of the field of a flag
  Test present = nullptr;
  Test live = nullptr;
  Test shown = nullptr;
  Command command = {};
  void (*settle)(const Subject&) = nullptr;
  bool aligned = true;
  bool colon = true;
  bool bracketed = false;
  bool leaving = false;

  /// This row with one member changed. "auto" has clang 14 read the body at once: it refuses the
  /// constant tables otherwise.
  template <typename T>
  constexpr auto with(T Row::*member, T changed) const {
    Row row = *this;
    row.*member = changed;
    return row;
  }

  /// The line is there only if `test` holds. A line that is not there has no item number either.
  constexpr Row present_if(Test test) const { return with(&Row::present, test); }
  /// The arrow rests here only if `test` holds. Otherwise the label is dim and has no value.
  constexpr Row live_if(Test test) const { return with(&Row::live, test); }
  /// The label is bright and has a value if `test` holds, whatever `live_if` says.
  constexpr Row shown_if(Test test) const { return with(&Row::shown, test); }
  /// Keeps other fields in step after an edit.
  constexpr Row then(void (*function)(const Subject&)) const {
    return with(&Row::settle, function);
  }
  /// Enter does this instead of toggling the flag.
  constexpr Row enters(Command other) const { return with(&Row::command, other); }
  /// The command leaves the screen as well.
  constexpr Row leaves() const { return with(&Row::leaving, true); }
  constexpr Row labelled(text::Id (*by)(const Subject&)) const { return with(&Row::label_of, by); }
  constexpr Row marked(const char* by) const { return with(&Row::mark, by); }
  constexpr Row in_brackets() const { return with(&Row::bracketed, true); }
  constexpr Row without_colon() const { return with(&Row::colon, false); }
  /// A shorter number than others starts in the same column as they do.
  constexpr Row unaligned() const { return with(&Row::aligned, false); }
  /// Shows the on and off words of UPSs and groups.
  constexpr Row on_off() const { return with(&Row::flag_words, FlagWords::on_off); }
  /// Shows the first letter of yes and no.
  constexpr Row one_letter() const { return with(&Row::flag_words, FlagWords::yes_no_letter); }
};

// The arguments of a builder stand in the order in which the eye meets them.

/// A text, edited in place.
constexpr Row words(const char* number, text::Id label, Field field) {
  return {Act::words, number, label, field};
}

/// A number from `low` to `high`.
constexpr Row number(const char* number, text::Id label, Field field, unsigned low, unsigned high) {
  return {Act::number, number, label, field, low, high};
}

/// An 8-bit or 16-bit number that is on unless it is 0. Enter makes it 0 or 1.
constexpr Row flag(const char* number, text::Id label, Field field) {
  return {Act::flag, number, label, field};
}

/// A flag that is more than a field.
constexpr Row flag(const char* number, text::Id label, Test is_on, Command toggle) {
  return {.act = Act::flag, .number = number, .label = label, .is_on = is_on, .command = toggle};
}

/// A label with a value that `value` formats.
constexpr Row custom(const char* number, text::Id label, std::string (*value)(const Subject&),
                     Command command) {
  return {.act = Act::custom, .number = number, .label = label, .value = value, .command = command};
}

/// A label alone.
constexpr Row open(const char* number, text::Id label, Command command) {
  return {.act = Act::open, .number = number, .label = label, .command = command};
}

/// A text without a number.
constexpr Row remark(text::Id label) { return {.act = Act::remark, .label = label}; }

inline constexpr Row rule = {};

/// The way out, item 0.
inline constexpr Row back = {.act = Act::back, .number = "0"};

/// The rows of a screen that has nothing but a list.
inline constexpr Row only_back[] = {rule, back};
