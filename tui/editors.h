#pragma once

#include <cstddef>
#include <cstdint>

/// The editors of a single value, and the pauses. All editors need line mode. A line that begins
/// with Escape cancels, as Enter alone does: the old value stays.

/// Waits. One microsecond stands for the shortest tick and is raised to 20.
void ussleep(long microseconds);
void sleepp(long milliseconds);
void s_tick();

/// How long a refusal can be read before the screen is drawn again, in microseconds.
constexpr long message_pause = 2000000;

/// Rings, shows a message on a line of its own, and waits for `message_pause`.
void print_refusal(const char* message);

/// Reads a line into the field `destination` of `size` bytes: at most `size - 2` bytes are taken,
/// the bell rings for every further one, and a character that would not fit whole is left out. The
/// rest of the field becomes zero. `size` is at most 260. The prompt stands on a new line, a
/// tabulator behind it, and what is typed is in the colour of values.
void get_str(char* destination, std::size_t size, const char* prompt);

/// The same with the prompt as "prompt: ", in the colour that is set.
void get_str1(char* destination, std::size_t size, const char* prompt);

/// The same as `get_str1`, but Enter alone is ignored: something must be typed.
void get_prtk(char* destination, std::size_t size, const char* prompt);

/// Reads a line and returns its number, or `current` when the line is empty or lies outside
/// `minimum` to `maximum`; then it also rings, shows `refusal` and waits two seconds. Numbers are
/// decimal and end at the first other character; a negative one is out of range. `reserved` is not
/// used.
std::uint16_t get_int1(std::uint16_t minimum, std::uint16_t maximum, std::uint16_t current,
                       int reserved, const char* refusal);

/// Prints `prompt` (unless null), reads a word and returns its number, cut to 16 bits; asks again,
/// after a bell and `refusal`, until it lies within `minimum` to `maximum`.
std::uint16_t get_int(std::uint16_t minimum, std::uint16_t maximum, const char* prompt,
                      const char* refusal);

/// The answers of `yesno` and `yesnostr`.
extern char yes_no[21];
extern char yes_no_str[256];

/// Copies the word for `flag`, at most 20 bytes of it, to `yes_no` and returns that. A null word
/// leaves it as it was.
const char* yesno(int flag, const char* yes_text, const char* no_text);

/// Fills `yes_no_str` with a hint like "[y=Yes,n=No]" and returns it. A null word leaves it as it
/// was. Letters are whole characters in lower case.
const char* yesnostr(const char* yes_text, const char* no_text);

/// Asks `question` with that hint and reads a word. 1 when it begins with the first letter of
/// `yes_text`, in either case; any other answer is 0.
int get_yesno(const char* yes_text, const char* no_text, const char* question);

/// Reads one word of at most 10 bytes; blanks and line ends before it are skipped. Returns its
/// first letter in upper case.
char32_t test_key();

/// Reads the decimal digits at the start of `text` into `result` (16 bits of them; 0 without
/// digits) and returns how many there were.
int getnum(const char* text, std::uint16_t& result);

/// Runs a shell command in the terminal and returns its status as system(3) does.
int run_command(const char* command);

/// Draws the screen on which every value is edited, up to where the present value stands.
void menu_insert_value(const char* label);
