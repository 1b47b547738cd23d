#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "tui/columns.h"
#include "tui/terminal.h"
#include "tui/terminal_state.h"

namespace {

// The longest line that a terminal driver accepts (N_TTY holds 4096 bytes with the line end).
constexpr std::size_t longest_line = 4095;

/// Bytes that wait for a reader. They may belong to a password, so `pop` clears what it returns.
struct Queue {
  std::string bytes;
  std::size_t at = 0;

  bool empty() const { return at == bytes.size(); }
  char pop() { return std::exchange(bytes[at++], '\0'); }
  void push(const char* more, std::size_t count) {
    if (empty()) {
      bytes.clear();
      at = 0;
    }
    bytes.append(more, count);
  }
};
Queue keys;           // read from the terminal in single-key mode
Queue line;           // of a finished line, not yet asked for
std::string typed;    // of an unfinished line that we correct ourselves
bool quoted = false;  // the next key of that line has no special meaning

bool end_of_file = false;  // stands for the end of the last line

// --- Waiting -------------------------------------------------------------------------------------

[[noreturn]] void end_of_input() {
  give_terminal_back();
  std::exit(0);
}

/// Whether a read would find bytes at once. In line mode only finished lines count.
bool input_waits() {
  int count = 0;
  return ioctl(STDIN_FILENO, FIONREAD, &count) == 0 && count > 0;
}

/// Whether the terminal still answers after a read that returned nothing.
bool terminal_alive() {
  termios attributes;
  return terminal.present && tcgetattr(STDIN_FILENO, &attributes) == 0;
}

/// Waits for input and reads what there is. Returns the number of bytes, or 0 when a signal asks
/// for a redraw. Ends the program at the end of the input. In line mode, a terminal that answers
/// but has nothing to read means that the operator typed the end-of-file character. That reads as
/// one line feed.
std::size_t read_input(char* bytes, std::size_t size) {
  const struct Reading {
    Reading() { reading = 1; }
    ~Reading() { reading = 0; }
  } noted;
  for (;;) {
    if (woken != 0) return 0;
    const ssize_t got = read(STDIN_FILENO, bytes, size);
    if (got > 0) return static_cast<std::size_t>(got);
    if (got < 0 && errno == EINTR) continue;
    if (got == 0 && terminal_alive()) {
      if (terminal.applied == Mode::line) {
        end_of_file = true;
        bytes[0] = '\n';
        return 1;
      }
      // Another program has changed the mode meanwhile.
      terminal.applied = Mode::as_found;
      apply(Mode::single_key);
      continue;
    }
    if (got < 0 && errno == EAGAIN) {
      pollfd input = {STDIN_FILENO, POLLIN, 0};
      if (poll(&input, 1, -1) >= 0 || errno == EINTR) continue;
    }
    end_of_input();
  }
}

/// Adds what the operator has typed to `keys`. Returns false when a signal asks for a redraw.
bool read_keys() {
  char bytes[1024];
  const std::size_t got = read_input(bytes, sizeof bytes);
  keys.push(bytes, got);
  explicit_bzero(bytes, got);
  return got != 0;
}

/// Returns the next byte of single-key input, or -1 when the screen has to be redrawn.
int next_key_byte() {
  if (!line.empty()) return static_cast<unsigned char>(line.pop());
  if (keys.empty()) {
    take_again();
    apply(Mode::single_key);  // first, so that nothing is echoed into the new screen
    flush();
    if (!read_keys()) return -1;
  }
  return static_cast<unsigned char>(keys.pop());
}

// --- Correcting a line ---------------------------------------------------------------------------

bool continues_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80; }

/// Removes the last character, on the screen too. When the terminal is not set to UTF-8, a
/// character is a byte, as for the driver.
void erase_character() {
  std::size_t start = typed.size() - 1;
  const bool utf8 = (terminal.found.c_iflag & IUTF8) != 0;
  while (utf8 && start > 0 && continues_character(typed[start])) --start;
  const std::string_view character = std::string_view(typed).substr(start);
  const bool caret = character.size() == 1 && static_cast<unsigned char>(character[0]) < ' ';
  const int width = caret ? 2 : columns(character);
  for (int i = 0; i < width; ++i) put("\b \b");
  typed.resize(start);
}

/// Whether word-erase counts `byte` as part of a word: a letter, a digit, "_", or not ASCII.
bool in_word(char byte) {
  return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '_' ||
         static_cast<unsigned char>(byte) >= 0x80;
}

void echo(char byte) {
  const auto code = static_cast<unsigned char>(byte);
  if (code < ' ' && byte != '\t' && byte != '\n')
    print("^%c", code + '@');
  else
    put({&byte, 1});
}

/// Does with one key what the driver does in line mode. Returns true when the line is finished.
bool edit_line(char byte) {
  const cc_t* control = terminal.found.c_cc;
  const auto is = [&](int which) {
    return terminal.present && control[which] != _POSIX_VDISABLE &&
           control[which] == static_cast<cc_t>(byte);
  };
  if (std::exchange(quoted, false)) {
    typed += byte;
    echo(byte);
  } else if (is(VLNEXT)) {
    quoted = true;
  } else if (is(VERASE)) {
    if (!typed.empty()) erase_character();
  } else if (is(VKILL)) {
    while (!typed.empty()) erase_character();
  } else if (is(VWERASE)) {
    while (!typed.empty() && !in_word(typed.back())) erase_character();
    while (!typed.empty() && in_word(typed.back())) erase_character();
  } else if (is(VEOF) && !typed.empty()) {
    return true;  // without a line end, as from the driver
  } else if (is(VEOF) || byte == '\n' || byte == '\r') {
    end_of_file = is(VEOF);
    typed += '\n';
    if (terminal.present) echo('\n');
    return true;
  } else if (typed.size() < longest_line) {
    typed += byte;
    if (terminal.present) echo(byte);
  }
  return false;
}

// --- Lines ---------------------------------------------------------------------------------------

/// Draws the screen of an editor again. Takes over what the driver holds of an unfinished line.
void repeat_screen() {
  woken = 0;
  take_again();
  apply(Mode::single_key);
  while (input_waits() && read_keys()) {
  }
  put_screen();
  for (const char byte : typed) echo(byte);
}

/// Waits until a line is finished, and puts it into the queue `line`.
void read_line() {
  end_of_file = false;
  if (typed.empty()) keep_screen();
  for (;;) {
    while (!keys.empty()) {
      if (!edit_line(keys.pop())) continue;
      line.push(typed.data(), typed.size());
      explicit_bzero(typed.data(), typed.size());
      typed.clear();
      return;
    }
    send_output();
    if (woken != 0) {
      repeat_screen();
    } else if (!terminal.present || !typed.empty()) {
      apply(Mode::single_key);
      read_keys();
    } else {
      apply(Mode::line);
      if (!terminal.echoed && input_waits()) {
        // These keys were typed before the switch: the driver can neither echo nor correct them.
        apply(Mode::single_key);
        read_keys();
        continue;
      }
      char bytes[longest_line + 1];
      const std::size_t got = read_input(bytes, sizeof bytes);
      if (got == 0) continue;
      terminal.echoed = true;
      line.push(bytes, got);
      explicit_bzero(bytes, got);
      return;
    }
  }
}

}  // namespace

Key read_key() {
  static int escape_bytes = 0;  // read so far of a sequence; a redraw may interrupt it
  for (;;) {
    const int byte = next_key_byte();
    if (byte < 0) {
      woken = 0;
      take_again();
      return Key::redraw;
    }
    if (escape_bytes == 0) {
      if (byte == '\n') return Key::enter;
      if (byte != '\033') return Key::other;
      escape_bytes = 1;
    } else if (escape_bytes == 1) {
      escape_bytes = 2;
    } else {
      escape_bytes = 0;
      return byte == 'A' ? Key::up : byte == 'B' ? Key::down : Key::other;
    }
  }
}

char read_line_byte() {
  if (line.empty()) read_line();
  return line.pop();
}

bool end_of_file_typed() { return end_of_file; }
