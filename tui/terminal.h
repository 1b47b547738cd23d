#pragma once

#include <string_view>

/// The terminal: its modes, its signals, what is printed and what is typed. Nobody else reads
/// standard input or writes standard output.
///
/// Printing goes to a buffer that reaches the terminal in one write, when the program is about to
/// wait. Keys are read in one of two modes. In single-key mode every key arrives at once and is not
/// echoed. In line mode the terminal driver echoes and lets the operator correct the line, which
/// arrives whole. A mode that is asked for takes effect when the program next waits.

// --- Output -------------------------------------------------------------------------------------

/// Adds to the buffer, as printf does.
void print(const char* form, ...) __attribute__((format(printf, 1, 2)));

/// Adds bytes as they are.
void put(std::string_view bytes);

/// Sends the buffer. Errors are ignored: a terminal that is gone shows itself when reading.
void flush();

/// What is printed from here on is a new screen: it is what a redraw of an editor repeats.
void begin_screen();

// --- Modes --------------------------------------------------------------------------------------

/// Notes the attributes of the terminal and installs the handlers of the signals that end, stop and
/// resize. A program in the background is stopped here until it comes to the foreground. Whatever
/// ends the program from then on, the terminal gets its attributes back: SIGINT, SIGTERM, SIGHUP,
/// SIGQUIT and SIGPIPE take their normal course afterwards, SIGTSTP stops the program and SIGCONT
/// makes it take the terminal again and redraw. A signal that was ignored at the start stays
/// ignored. Without a terminal on standard input there are no modes to switch.
void take_terminal();

/// Sends what is left, resets colours, shows the cursor and restores the attributes.
void give_terminal_back();

/// The same without allocating, for whoever ends the run in the middle of something: sends nothing
/// that is left, moves below the screen. Async-signal-safe (POSIX.1-2017, 2.4.3), and not held up
/// by a terminal that takes no output.
void restore_terminal();

void single_key_mode();
void line_mode();

/// Line mode for the length of a block, single-key mode behind it.
class LineMode {
 public:
  LineMode() { line_mode(); }
  ~LineMode() { single_key_mode(); }
  LineMode(const LineMode&) = delete;
  LineMode& operator=(const LineMode&) = delete;
};

/// The number of rows of the terminal, 24 where it does not tell.
int terminal_rows();

// --- Input --------------------------------------------------------------------------------------

enum class Key { enter, up, down, other, redraw };

/// Waits for a key of a menu: Enter (line feed), or Escape and two more bytes of which the second
/// tells the arrow (ECMA-48: CUU ends in A, CUD in B). Everything else is `other`. `redraw` means
/// that the screen has to be drawn again. Needs single-key mode. When the input ends, the program
/// does too: with status 0, nothing saved, the terminal given back.
Key read_key();

/// Waits for the next byte of a line that the operator ends with Enter. Keys typed before line mode
/// began are taken in first and shown; such a line is echoed and corrected here, by the editing
/// characters of the terminal, since its driver cannot take these keys back. A screen that has to
/// be redrawn meanwhile is repeated, with what has been typed. The end of the input ends the
/// program as with `read_key`; the end-of-file character of a terminal ends an empty line.
char read_line_byte();

/// Sends the output and waits. Less than the time of one microsecond is not waited for.
void pause_us(long microseconds);

/// Hands the terminal, in line mode and with its own colours, to the shell command `command`, and
/// takes it again when that has ended. Returns the status as system(3) does.
int run_in_terminal(const char* command);
