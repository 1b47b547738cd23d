#pragma once

#include <termios.h>

#include <csignal>

/// What the two sources of the terminal share. `terminal.cpp` has the modes, the signals and the
/// output. `input.cpp` has the input. Everybody else uses `tui/terminal.h`.

enum class Mode { as_found, single_key, line };

struct Terminal {
  termios found;         // as at the start
  bool present = false;  // standard input is a terminal
  Mode applied = Mode::as_found;
  bool echoed = false;  // whatever waits is on the screen already: the driver has echoed it
};
extern Terminal terminal;

/// The signal handlers set this when the screen has to be drawn again.
extern volatile std::sig_atomic_t woken;

/// Is not 0 from the test of `woken` to the end of the read after it. A signal that sets `woken`
/// meanwhile arrives again within 50 ms, until the read has ended. So it interrupts a read that
/// began after it.
extern volatile std::sig_atomic_t reading;

/// Switches the terminal now. Waits until all output is sent, and never throws typed keys away.
void apply(Mode mode);

/// Takes the terminal again, in our colours, if another program has used it: after SIGCONT or after
/// `run_in_terminal`.
void take_again();

/// Remembers what has been printed of the current screen, for a redraw.
void keep_screen();

/// Prints what `keep_screen` remembers of the current screen.
void put_screen();

/// Sends the buffer, and does not remember it for a redraw.
void send_output();
