#include "tui/editors.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tui/columns.h"
#include "tui/format.h"
#include "tui/screen.h"
#include "tui/terminal.h"

char yes_no[21];
char yes_no_str[256];

namespace {

constexpr std::size_t line_size = 260;    // of the widest field, the name of a program
constexpr std::size_t number_size = 200;  // bytes of a line that count for its number
constexpr std::size_t word_size = 200;

bool ends_line(char byte) { return byte == '\n' || byte == '\r'; }

bool blank(char byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }

/// Reads a line. Returns at most `limit` bytes of it, in whole characters, and rings for every
/// further byte.
std::string read_bounded(std::size_t limit, bool must_type) {
  constexpr std::size_t longest_character = 4;
  std::string line;
  line.reserve(limit + longest_character);  // growing would leave copies of a password in memory
  for (std::size_t count = 0;;) {
    const char byte = read_line_byte();
    if (ends_line(byte)) {
      if (line.empty() && must_type) continue;
      line.resize(cut_bytes(line, limit).size());
      return line;
    }
    if (++count > limit) beep();
    if (count <= limit + longest_character) line += byte;
  }
}

void edit_text(char* destination, std::size_t size, bool must_type) {
  std::string typed = read_bounded(std::min(size, line_size) - 2, must_type);
  const bool kept = typed.empty() || typed[0] == '\0' || typed[0] == '\033';
  if (!kept) std::strncpy(destination, typed.c_str(), size);
  explicit_bzero(typed.data(), typed.size());  // it may have been a password
}

/// Reads one word, as scanf does for "%200s". The rest of the line waits for the next reader.
std::string read_word(std::size_t limit) {
  char byte;
  do {
    byte = read_line_byte();
  } while (blank(byte));
  std::string word(1, byte);
  while (word.size() < limit) {
    byte = read_line_byte();
    if (blank(byte)) break;
    word += byte;
  }
  return word;
}

/// Returns the number at the start of `typed`, or -1 when it is negative or does not fit 32 bits.
std::int64_t number_in(const std::string& typed) {
  const long long number = std::strtoll(typed.c_str(), nullptr, 10);
  return number < 0 || number > UINT32_MAX ? -1 : number;
}

std::string answer_letter(const char* text) { return to_utf8(lower_case(first_letter(text))); }

}  // namespace

void ussleep(long microseconds) { pause_us(microseconds == 1 ? 20 : microseconds); }

void sleepp(long milliseconds) { ussleep(milliseconds * 1000); }

void s_tick() { ussleep(1); }

void print_refusal(const char* message) {
  print("\a\n%s\n", message);
  ussleep(message_pause);
}

void get_str(char* destination, std::size_t size, const char* prompt) {
  print("\n%s\t", prompt);
  print_escapeseq(escape::value);
  edit_text(destination, size, false);
}

void get_str1(char* destination, std::size_t size, const char* prompt) {
  print("\n%s: ", prompt);
  edit_text(destination, size, false);
}

void get_prtk(char* destination, std::size_t size, const char* prompt) {
  print("\n%s: ", prompt);
  edit_text(destination, size, true);
}

std::uint16_t get_int1(std::uint16_t minimum, std::uint16_t maximum, std::uint16_t current, int,
                       const char* refusal) {
  std::string typed;
  for (char byte = read_line_byte(); !ends_line(byte); byte = read_line_byte()) {
    if (typed.size() < number_size) typed += byte;
  }
  print_escapeseq(escape::normal);
  if (typed.empty() || typed[0] == '\033') return current;
  const std::int64_t number = number_in(typed);
  if (number >= minimum && number <= maximum) return static_cast<std::uint16_t>(number);
  print_refusal(refusal);
  return current;
}

std::uint16_t get_int(std::uint16_t minimum, std::uint16_t maximum, const char* prompt,
                      const char* refusal) {
  for (;;) {
    if (prompt != nullptr) print("%s", prompt);
    const std::string word = read_word(word_size);
    const std::int64_t whole = word[0] == '\033' ? -1 : number_in(word);
    const auto number = static_cast<std::uint16_t>(whole);
    if (whole >= 0 && number >= minimum && number <= maximum) return number;
    print("\a\n%s\n", refusal);
  }
}

const char* yesno(int flag, const char* yes_text, const char* no_text) {
  const char* text = flag != 0 ? yes_text : no_text;
  if (text != nullptr) {
    const std::string_view word = cut_bytes(text, sizeof yes_no - 1);
    yes_no[word.copy(yes_no, word.size())] = '\0';
  }
  return yes_no;
}

const char* yesnostr(const char* yes_text, const char* no_text) {
  if (yes_text != nullptr && no_text != nullptr) {
    std::snprintf(yes_no_str, sizeof yes_no_str, "[%s=%s,%s=%s]", answer_letter(yes_text).c_str(),
                  yes_text, answer_letter(no_text).c_str(), no_text);
  }
  return yes_no_str;
}

int get_yesno(const char* yes_text, const char* no_text, const char* question) {
  print("\n%s %s : ", question, yesnostr(yes_text, no_text));
  const std::string word = read_word(word_size);
  return lower_case(first_letter(word)) == lower_case(first_letter(yes_text)) ? 1 : 0;
}

char32_t test_key() {
  constexpr std::size_t answer_size = 10;
  return upper_case(first_letter(read_word(answer_size)));
}

int getnum(const char* text, std::uint16_t& result) {
  std::uint32_t number = 0;
  int digits = 0;
  for (; text[digits] >= '0' && text[digits] <= '9'; ++digits) {
    number = number * 10 + static_cast<std::uint32_t>(text[digits] - '0');
  }
  result = static_cast<std::uint16_t>(number);
  return digits;
}

int run_command(const char* command) { return run_in_terminal(command); }

void menu_insert_value(const char* label) {
  print_escapeseq(escape::clear_screen);
  cursor_gotopos(7, 0, 0);
  print_line(1);
  print_line(3);
  print_center(label);
  print_line(3);
  print_line(1);
  print_line(0);
  // A cut label leaves room for the tabulator. The value goes on in the next rows if it has to.
  constexpr int tabulator = 8;
  put("\n\r" + cut_marked(format("      %s:", label), line_columns() - tabulator) + "\t");
  print_escapeseq(escape::value);
}
