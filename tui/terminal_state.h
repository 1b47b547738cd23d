#pragma once

#include <termios.h>

#include <csignal>

/// What the two sources of the terminal share: `terminal.cpp` with its modes, its signals and what
/// is printed, and `input.cpp` with what is typed. Everybody else uses `tui/terminal.h`.

enum class Mode { as_found, single_key, line };

struct Terminal {
  termios found;         // as at the start
  bool present = false;  // standard input is a terminal
  Mode applied = Mode::as_found;
};
extern Terminal terminal;

/// Set by the handlers: the screen has to be drawn again.
extern volatile std::sig_atomic_t woken;

/// Switches the terminal at once. Waits for output to be sent, and never throws typed keys away.
void apply(Mode mode);

/// After SIGCONT somebody else has used the terminal: take it again, in our colours.
void take_again();

/// Notes what has been printed of the present screen, for a redraw.
void keep_screen();

/// Prints the present screen again, as far as it has been noted.
void put_screen();

/// Sends what has been printed, without noting it.
void send_output();
