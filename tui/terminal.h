#pragma once

#include <string_view>

/// The terminal: its modes, its signals, what is printed and what is typed. Nobody else reads
/// standard input or writes standard output.
///
/// Printing fills a buffer. The buffer reaches the terminal in one write, just before the program
/// waits. Keys are read in one of two modes. In single-key mode every key arrives at once, without
/// an echo. In line mode the terminal driver echoes the keys and lets the operator correct the
/// line, and the line arrives whole. A change of mode takes effect when the program next waits.

// --- Output -------------------------------------------------------------------------------------

/// Adds to the buffer, as printf does.
void print(const char* form, ...) __attribute__((format(printf, 1, 2)));

/// Adds bytes as they are.
void put(std::string_view bytes);

/// Sends the buffer. Ignores errors: when the terminal is gone, the next read fails too.
void flush();

/// Begins a new screen. A redraw of an editor repeats everything that was printed since.
void begin_screen();

// --- Modes --------------------------------------------------------------------------------------

/// Saves the attributes of the terminal, and installs handlers for the signals that end, stop,
/// continue and resize. A program in the background stops here until it comes to the foreground.
///
/// From now on the terminal gets its attributes back, whatever ends the program. SIGINT, SIGTERM,
/// SIGHUP, SIGQUIT and SIGPIPE take their normal course after that. SIGTSTP stops the program.
/// SIGCONT makes it take the terminal again and redraw. SIGXFSZ does nothing. A signal that was
/// ignored at the start stays ignored. Without a terminal on standard input there are no modes to
/// switch.
void take_terminal();

/// Resets the colours, shows the cursor, sends the buffer and restores the attributes.
void give_terminal_back();

/// Gives the terminal back when the run ends in the middle of something, by a signal or without
/// memory. Resets the colours, shows the cursor, moves below the screen, restores the attributes
/// and throws typed keys away: the shell must not read them. In the background, another program
/// uses the terminal, so its attributes and its keys stay. Never allocates and never sends the
/// buffer. Async-signal-safe (POSIX.1-2017, 2.4.3). Waits at most 200 ms for a terminal that takes
/// no output. Does nothing when the terminal is given back already.
void restore_terminal();

/// Ask for a mode. `LineMode` does so for an editor.
void single_key_mode();
void line_mode();

/// Line mode for the length of a block, single-key mode after it.
class LineMode {
 public:
  LineMode() { line_mode(); }
  ~LineMode() { single_key_mode(); }
  LineMode(const LineMode&) = delete;
  LineMode& operator=(const LineMode&) = delete;
};

/// Returns the number of rows of the terminal, or 24 when the terminal does not say. The terminal
/// is asked for its size once for each screen, because a change of size has the screen drawn again.
int terminal_rows();

/// Returns how many columns a line may take: all columns of the terminal but the last, because some
/// terminals break the line as soon as the last is written. A terminal that does not say has 80.
int line_columns();

// --- Input --------------------------------------------------------------------------------------

enum class Key { enter, up, down, other, redraw };

/// Waits for a key of a menu. Enter is a line feed. An arrow is Escape and two more bytes, and the
/// last byte says which arrow (ECMA-48: CUU ends in A, CUD in B). Everything else is `other`.
/// `redraw` means that the screen has to be drawn again. Needs single-key mode. The end of the
/// input ends the program with status 0. Nothing is saved then, and the terminal is given back.
Key read_key();

/// Waits for the next byte of a line that the operator ends with Enter.
///
/// Keys typed before line mode began come first. The driver can neither echo nor correct them any
/// more. So this function does both for the whole line, with the terminal's editing characters. A
/// redraw repeats the screen and what has been typed. The end of the input ends the program as in
/// `read_key`. On an empty line, the end-of-file character of a terminal counts as Enter.
char read_line_byte();

/// Returns whether the end of the last line was the end-of-file character on an empty line.
bool end_of_file_typed();

/// Sends the buffer and waits so many microseconds, or not at all for 0 and less. When the program
/// is stopped and continued, the pause ends early.
void pause_us(long microseconds);

/// Runs the shell command `command` at the terminal, in line mode and with the terminal's own
/// colours. Takes the terminal again when the command has ended. Returns the status as system(3)
/// does.
int run_in_terminal(const char* command);
