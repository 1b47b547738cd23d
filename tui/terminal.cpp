#include "tui/terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>
#include <string>
#include <utility>

#include "tui/columns.h"

namespace {

// --- State --------------------------------------------------------------------------------------

enum class Mode { as_found, single_key, line };

struct Terminal {
  termios found;         // as at the start
  bool present = false;  // standard input is a terminal
  Mode wanted = Mode::as_found;
  Mode applied = Mode::as_found;
};
Terminal terminal;

/// What the handlers tell the rest of the program.
volatile std::sig_atomic_t held = 0;     // the terminal is in one of our modes, in our colours
volatile std::sig_atomic_t woken = 0;    // the screen has to be drawn again
volatile std::sig_atomic_t resumed = 0;  // the mode may have been changed while we were stopped

// The longest line that a terminal driver takes (N_TTY holds 4096 bytes with the line end).
constexpr std::size_t longest_line = 4095;

// A screen is 2 to 3 KiB. What exceeds this are arrow moves, which no redraw needs.
constexpr std::size_t longest_screen = 32768;

std::string output;            // printed, not yet sent
std::size_t screen_begin = 0;  // where the present screen begins in `output`
std::string screen;            // sent since the present screen began

/// Bytes that wait for a reader. They may be those of a password: nothing that was read stays.
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
bool quoted = false;  // the next key of it is taken as it is

// --- Signals ------------------------------------------------------------------------------------

/// Colours reset, cursor shown, below the last screen.
constexpr char parting[] = "\033[0m\033[?25h\033[999;1H\r\n";

/// For a signal that ends us: SA_RESETHAND has put the default action back, so that the parent sees
/// the true cause once the signal is raised again.
void end_by_signal(int signal) {
  restore_terminal();
  raise(signal);
}

void set_handler(int signal, void (*handler)(int), int flags, struct sigaction* before = nullptr) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  // A second signal waits until the terminal is back.
  for (const int other : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGTSTP}) {
    sigaddset(&action.sa_mask, other);
  }
  sigaction(signal, &action, before);
}

/// For SIGTSTP: stops by the default action, and goes on behind it after SIGCONT.
void stop_by_signal(int signal) {
  const int saved_errno = errno;
  restore_terminal();
  set_handler(signal, SIG_DFL, 0);
  sigset_t only;
  sigset_t before;
  sigemptyset(&only);
  sigaddset(&only, signal);
  raise(signal);
  sigprocmask(SIG_UNBLOCK, &only, &before);
  sigprocmask(SIG_SETMASK, &before, nullptr);
  set_handler(signal, stop_by_signal, 0);
  // Also where nobody could continue us and the stop has been discarded, as POSIX has it for the
  // first process of a session: the terminal has to be taken again all the same.
  resumed = 1;
  woken = 1;
  errno = saved_errno;
}

void wake_by_signal(int signal) {
  if (signal == SIGCONT) resumed = 1;
  woken = 1;
}

/// Installs a handler unless the signal is ignored, as for a program in the background.
void handle(int signal, void (*handler)(int), int flags) {
  struct sigaction before = {};
  set_handler(signal, handler, flags, &before);
  if (before.sa_handler == SIG_IGN) sigaction(signal, &before, nullptr);
}

// --- Modes --------------------------------------------------------------------------------------

/// Switches the terminal at once. Waits for output to be sent, and never throws typed keys away.
void apply(Mode mode) {
  if (terminal.applied == mode) return;
  terminal.applied = mode;
  if (!terminal.present) return;
  termios attributes = terminal.found;
  constexpr tcflag_t line_flags = ICANON | ECHO;
  if (mode == Mode::single_key) attributes.c_lflag &= ~line_flags;
  if (mode == Mode::line) attributes.c_lflag |= line_flags;
  while (tcsetattr(STDIN_FILENO, TCSADRAIN, &attributes) != 0 && errno == EINTR) {
  }
}

/// After SIGCONT somebody else has used the terminal: take it again, in our colours.
void take_again() {
  if (resumed == 0) return;
  resumed = 0;
  held = 1;
  terminal.applied = Mode::as_found;
  put("\033[?25l\033[40m\033[1;37m");
}

[[noreturn]] void end_of_input() {
  give_terminal_back();
  std::exit(0);
}

// --- Output -------------------------------------------------------------------------------------

/// Notes what has been printed of the present screen, for a redraw.
void keep_screen() {
  if (screen.size() < longest_screen) screen.append(output, screen_begin, std::string::npos);
  screen_begin = output.size();
}

void send_output() {
  std::string_view left = output;
  while (!left.empty()) {
    const ssize_t sent = write(STDOUT_FILENO, left.data(), left.size());
    if (sent > 0) {
      left.remove_prefix(static_cast<std::size_t>(sent));
    } else if (sent < 0 && errno == EAGAIN) {
      pollfd room = {STDOUT_FILENO, POLLOUT, 0};
      poll(&room, 1, -1);
    } else if (sent == 0 || errno != EINTR) {
      break;
    }
  }
  output.clear();
  screen_begin = 0;
}

// --- Input --------------------------------------------------------------------------------------

/// How many bytes could be read at once; in line mode only finished lines count.
bool input_waits() {
  int count = 0;
  return ioctl(STDIN_FILENO, FIONREAD, &count) == 0 && count > 0;
}

/// Whether the terminal still answers after a read of nothing.
bool terminal_alive() {
  termios attributes;
  return terminal.present && tcgetattr(STDIN_FILENO, &attributes) == 0;
}

/// Waits for input and reads what there is. Returns the number of bytes, 0 when a signal wants the
/// screen redrawn. Ends the program at the end of the input. A terminal that answers but has
/// nothing to read gives one line feed in line mode: the operator has typed the end-of-file
/// character.
std::size_t read_input(char* bytes, std::size_t size) {
  for (;;) {
    // A signal just here is noticed with the next key: waiting for both would take a further system
    // call for every key.
    if (woken != 0) return 0;
    const ssize_t got = read(STDIN_FILENO, bytes, size);
    if (got > 0) return static_cast<std::size_t>(got);
    if (got < 0 && errno == EINTR) continue;
    if (got == 0 && terminal_alive()) {
      if (terminal.applied == Mode::line) {
        bytes[0] = '\n';
        return 1;
      }
      // A terminal set to return from a read at once (VMIN 0): wait for its input elsewhere.
      pollfd input = {STDIN_FILENO, POLLIN, 0};
      const int ready = poll(&input, 1, -1);
      if ((ready < 0 && errno == EINTR) || (ready > 0 && input_waits())) continue;
    }
    if (got < 0 && errno == EAGAIN) {
      pollfd input = {STDIN_FILENO, POLLIN, 0};
      if (poll(&input, 1, -1) >= 0 || errno == EINTR) continue;
    }
    end_of_input();
  }
}

/// Reads into `keys` what the operator has typed. False when the screen has to be redrawn instead.
bool read_keys() {
  char bytes[1024];
  const std::size_t got = read_input(bytes, sizeof bytes);
  keys.push(bytes, got);
  explicit_bzero(bytes, got);
  return got != 0;
}

/// The next byte of single-key input, or -1 when the screen has to be redrawn.
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

bool continues_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80; }

/// Takes the last character back, on the screen too. It is a byte where the terminal is not set to
/// UTF-8, as for its driver.
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

/// What word-erase takes for a part of a word: letters, digits and "_", and all that is not ASCII.
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

/// Does with one key what the terminal driver does in line mode. True when the line is finished.
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
    return true;  // without a line end, as the driver gives it
  } else if (is(VEOF) || byte == '\n' || byte == '\r') {
    typed += '\n';
    if (terminal.present) echo('\n');
    return true;
  } else if (typed.size() < longest_line) {
    typed += byte;
    if (terminal.present) echo(byte);
  }
  return false;
}

/// Draws the screen of an editor again. What the driver holds of an unfinished line becomes ours.
void repeat_screen() {
  woken = 0;
  take_again();
  apply(Mode::single_key);
  while (input_waits() && read_keys()) {
  }
  put(screen);
  for (const char byte : typed) echo(byte);
}

/// Waits until a line is finished.
void read_line() {
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
      if (input_waits()) {
        // Typed before the switch, so not echoed by the driver, and out of reach of its correction.
        apply(Mode::single_key);
        read_keys();
        continue;
      }
      char bytes[longest_line + 1];
      const std::size_t got = read_input(bytes, sizeof bytes);
      if (got == 0) continue;
      line.push(bytes, got);
      explicit_bzero(bytes, got);
      return;
    }
  }
}

}  // namespace

void print(const char* format, ...) {
  char text[512];
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(text, sizeof text, format, arguments);
  if (length > 0 && static_cast<std::size_t>(length) < sizeof text) {
    output.append(text, static_cast<std::size_t>(length));
  } else if (length > 0) {
    const std::size_t used = output.size();
    output.resize(used + static_cast<std::size_t>(length) + 1);
    std::vsnprintf(output.data() + used, static_cast<std::size_t>(length) + 1, format, again);
    output.pop_back();
  }
  va_end(again);
  va_end(arguments);
}

void put(std::string_view bytes) { output.append(bytes); }

void begin_screen() {
  screen.clear();
  screen_begin = output.size();
}

void flush() {
  keep_screen();
  send_output();
}

void take_terminal() {
  terminal.present = tcgetattr(STDIN_FILENO, &terminal.found) == 0;
  terminal.applied = Mode::as_found;
  held = 1;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
    handle(signal, end_by_signal, SA_RESETHAND);
  }
  handle(SIGTSTP, stop_by_signal, 0);
  handle(SIGCONT, wake_by_signal, 0);
  handle(SIGWINCH, wake_by_signal, 0);
}

void give_terminal_back() {
  put("\033[?25h\033[0m");
  flush();
  apply(Mode::as_found);
  held = 0;
}

void restore_terminal() {
  if (held == 0) return;
  held = 0;
  constexpr int patience_ms = 200;
  pollfd room = {STDOUT_FILENO, POLLOUT, 0};
  if (poll(&room, 1, patience_ms) > 0) {
    [[maybe_unused]] const ssize_t sent = write(STDOUT_FILENO, parting, sizeof parting - 1);
  }
  if (terminal.present) tcsetattr(STDIN_FILENO, TCSANOW, &terminal.found);
}

void single_key_mode() { terminal.wanted = Mode::single_key; }
void line_mode() { terminal.wanted = Mode::line; }

int terminal_rows() {
  winsize size = {};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 ? size.ws_row : 24;
}

Key read_key() {
  static int escape_bytes = 0;  // read of a sequence that a redraw has interrupted
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

void pause_us(long microseconds) {
  take_again();
  if (terminal.wanted == Mode::single_key) apply(Mode::single_key);
  flush();
  timespec now;
  clock_gettime(CLOCK_MONOTONIC, &now);
  const long long end = now.tv_sec * 1000000LL + now.tv_nsec / 1000 + microseconds;
  for (long long left = microseconds; left > 0 && resumed == 0;) {
    timeval wait = {static_cast<time_t>(left / 1000000), static_cast<suseconds_t>(left % 1000000)};
    select(0, nullptr, nullptr, nullptr, &wait);
    clock_gettime(CLOCK_MONOTONIC, &now);
    left = end - (now.tv_sec * 1000000LL + now.tv_nsec / 1000);
  }
}

int run_in_terminal(const char* command) {
  put("\033[0m\033[?25h");
  flush();
  apply(Mode::line);
  const int status = std::system(command);
  resumed = 1;  // as after being stopped, somebody else has used the terminal
  take_again();
  return status;
}
