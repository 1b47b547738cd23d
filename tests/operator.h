#pragma once

#include <sys/types.h>
#include <termios.h>
#include <vterm.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "tests/folder.h"

/// How a character is shown: colours by their ANSI number, black 0 to white 7, -1 for the
/// terminal's own.
struct Look {
  int foreground;
  int background;
  bool bold;
  bool operator==(const Look&) const = default;
};

struct Cell {
  std::string text;  // one character as UTF-8, a blank where nothing was written
  Look look;
};

/// How the program is started.
struct Options {
  int rows = 24;
  int cols = 80;

  /// The name it is called by, from its folder as current directory; without a slash it is looked
  /// up in the PATH, which begins with the folder. A script may stand before the program.
  std::string name = "./harrier";

  std::map<std::string, std::string> environment = {};  // on top of that of the tests
};

/// A person at a terminal who has started the program there: types keys, reads the screen.
///
/// Everything that looks at the terminal first waits until the program has settled: it has read all
/// keys, its output has come, and it waits or has ended. Never sleep in a case. A pause counts as
/// waiting, so that its message can be read. `expect`, `choose` and `answer` wait for its end.
///
/// What cannot be done, or does not come within two minutes, shows the screen and the last steps,
/// and ends the case by an exception. A memory error that the program reports fails the case at its
/// end.
///
/// The program runs in the foreground of a terminal session, so it can be stopped and continued.
class Operator {
 public:
  /// Starts the program and lets it settle, so that nothing is typed before it has the terminal.
  explicit Operator(const Folder& folder, const Options& options = {});
  ~Operator();  // kills the program if it still runs
  Operator(const Operator&) = delete;
  Operator& operator=(const Operator&) = delete;

  /// Sends bytes as they are, however many, reading what the program writes meanwhile.
  void type(std::string_view keys);
  void enter() { type("\r"); }  // which the terminal turns into a line feed unless told not to
  void up(int times = 1) {
    while (times-- > 0) type("\x1b[A");
  }
  void down(int times = 1) {
    while (times-- > 0) type("\x1b[B");
  }

  /// Moves the arrow to the item with this number ("7", "6.1", "10") by Up or Down, and presses
  /// Enter. Waits for a menu first.
  void choose(std::string_view number);

  /// Chooses one item after the other: "1/7/2".
  void open(std::string_view path);

  /// Moves the arrow to this row of the screen. Waits for a menu first.
  void point(int row);

  /// Waits for a question, and types a line with Enter at its end.
  void answer(std::string_view line);

  /// Chooses item 0 of the screen.
  void leave() { choose("0"); }

  /// Leaves one screen after the other until the program ends, and returns its exit status. Answers
  /// the question whether to save, which must come if there is an answer, and only then.
  int quit(std::string_view answer = "");

  std::string row(int number);  // from 1, without blanks at its end
  std::string screen();         // all rows, without the empty ones at the end
  int arrow();                  // the row of the mark "-->", 0 if there is none

  /// Here any number of blanks counts as one, and so does the end of a row.
  bool shows(std::string_view text);
  void expect(std::string_view text);  // waits until the screen shows it, over pauses too

  /// What a cell, numbered from 1, showed when the terminal was last looked at. Waits for nothing,
  /// so that all cells belong to one screen.
  Cell cell(int row, int col) const;
  void settle();

  bool cursor_visible();
  int bells();  // how often the bell has rung

  bool echo() { return mode(ECHO); }         // the terminal shows what is typed
  bool canonical() { return mode(ICANON); }  // the terminal collects whole lines

  /// How many bytes no program has read, those of an unfinished line too. Only for a program that
  /// has ended or stopped.
  int unread_keys();

  void resize(int rows, int cols);
  int cols() const { return cols_; }
  void signal(int number);  // to the program alone

  /// Pulls the terminal away: the input ends. No shell passes a SIGHUP on; that is
  /// `signal(SIGHUP)`.
  void hang_up();

  bool stopped();  // waits until the program is stopped by a signal

  /// Waits for the end. The exit status, or 128 and the signal that ended the program.
  int exit_status();
  bool ended();

  std::string output();  // every byte that the program has written so far

 private:
  Operator(int rows, int cols);
  bool mode(tcflag_t flag);
  void pump(int milliseconds);
  void await(const std::function<bool()>& condition, const std::string& what);
  [[noreturn]] void lose(const std::string& what);
  std::string text(const VTermRect& part) const;
  std::string row_now(int number) const;

  int rows_;
  int cols_;
  pid_t leader_ = -1;  // of the session, it reports what becomes of the program
  pid_t pid_ = -1;
  int master_ = -1;
  int slave_ = -1;  // our own, to ask the terminal
  int report_ = -1;
  std::optional<int> status_;  // as by waitpid
  std::string output_;
  std::size_t emulated_ = 0;  // the bytes of it that the emulator has got
  std::string trail_;         // what has been done so far
  VTerm* terminal_;
  VTermScreen* screen_;
};

/// Shows keys such as "\r" and arrows as they are written in a program.
std::string readable(std::string_view keys);
