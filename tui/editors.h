#pragma once

#include <cstddef>
#include <cstdint>

/// The editors of a single value, and the pauses. All editors need line mode. In an editor that
/// knows an old value, Enter alone keeps it, and so does a line that begins with Escape.

/// Send the output and wait. `s_tick` waits the shortest time, 20 microseconds. `ussleep(1)` does
/// so too.
void ussleep(long microseconds);
void sleepp(long milliseconds);
void s_tick();

/// How long a refusal stays on the screen, in microseconds.
constexpr long message_pause = 2000000;

/// Rings, shows `message` on a line of its own, and waits for `message_pause`.
void print_refusal(const char* message);

/// Reads a line into the field `destination` of `size` bytes, at most 260. Takes up to `size - 2`
/// bytes and rings for every further byte. Leaves out a character that would not fit whole. The
/// rest of the field becomes zero. Prints the prompt on a new line, and a tabulator after it. The
/// typed text has the colour of values.
void get_str(char* destination, std::size_t size, const char* prompt);

/// As `get_str`, but prints ": " after the prompt and leaves the colour as it is.
void get_str1(char* destination, std::size_t size, const char* prompt);

/// As `get_str1`, but ignores Enter alone: the operator must type something.
void get_prtk(char* destination, std::size_t size, const char* prompt);

/// Reads a line and returns its number. Returns `current` when the line is empty or begins with
/// Escape. When the number lies outside `minimum` to `maximum`, rings, shows `refusal`, waits two
/// seconds and returns `current`. Numbers are decimal and end at the first other character. A
/// negative number is out of range, and so is a number that does not fit 32 bits. `reserved` is not
/// used.
std::uint16_t get_int1(std::uint16_t minimum, std::uint16_t maximum, std::uint16_t current,
                       int reserved, const char* refusal);

/// Prints `prompt` (unless null), reads a word and returns its number, cut to 16 bits: 65537 is 1.
/// When the cut number lies outside `minimum` to `maximum`, when the whole number is negative or
/// does not fit 32 bits, or when the word begins with Escape, rings, shows `refusal` and asks
/// again.
std::uint16_t get_int(std::uint16_t minimum, std::uint16_t maximum, const char* prompt,
                      const char* refusal);

/// `yesno` returns `yes_no`, and `yesnostr` returns `yes_no_str`.
extern char yes_no[21];
extern char yes_no_str[256];

/// Copies the word for `flag` to `yes_no`, at most 20 bytes in whole characters, and returns
/// `yes_no`. A null word leaves `yes_no` as it was.
const char* yesno(int flag, const char* yes_text, const char* no_text);

/// Fills `yes_no_str` with a hint like "[y=Yes,n=No]" and returns it. A null word leaves
/// `yes_no_str` as it was. The letters are whole characters in lower case.
const char* yesnostr(const char* yes_text, const char* no_text);

/// Asks `question` with the hint of `yesnostr`, and reads a word. Returns 1 when the word begins
/// with the first letter of `yes_text`, in either case, and 0 otherwise.
int get_yesno(const char* yes_text, const char* no_text, const char* question);

/// Reads one word of at most 10 bytes, and skips blanks and line ends before it. Returns its first
/// letter in upper case.
char32_t test_key();

/// Reads the decimal digits at the start of `text`, and returns how many there are. `result`
/// becomes their number, cut to 16 bits, or 0 without digits.
int getnum(const char* text, std::uint16_t& result);

/// Runs a shell command in the terminal and returns its status as system(3) does.
int run_command(const char* command);

/// Draws the screen on which every value is edited. The caller then prints the old value, which
/// stands after `label`.
void menu_insert_value(const char* label);
