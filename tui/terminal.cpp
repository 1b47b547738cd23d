#include "tui/terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <string>
#include <string_view>

#include "tui/columns.h"
#include "tui/format.h"
#include "tui/terminal_state.h"

namespace {

// --- State --------------------------------------------------------------------------------------

/// What the signal handlers and the rest of the program share, besides `woken`.
volatile std::sig_atomic_t held = 0;     // the terminal is in one of our modes, in our colours
volatile std::sig_atomic_t resumed = 0;  // the mode may have been changed while we were stopped

timer_t alarm_timer;     // sends SIGALRM once, after `wake_by_signal` has set it
bool has_timer = false;  // does not change once there are handlers

Mode wanted = Mode::as_found;  // asked for by the menu or the editor that runs next

// A screen is 2 to 3 KiB. Only arrow moves exceed this limit, and no redraw needs them.
constexpr std::size_t longest_screen = 32768;

std::string output;            // printed, not yet sent
std::size_t screen_begin = 0;  // where the current screen begins in `output`
std::string screen;            // sent since the current screen began

winsize size = {};        // of the terminal, while the current screen is drawn
bool size_known = false;  // asked for since that screen began

// --- Signals ------------------------------------------------------------------------------------

/// Resets the colours, shows the cursor and moves below the screen.
constexpr char parting[] = "\033[0m\033[?25h\033[999;1H\r\n";

/// For a signal that ends us. SA_RESETHAND has put the default action back: the signal, raised
/// again, ends us, and the parent sees the true cause.
void end_by_signal(int signal) {
  restore_terminal();
  raise(signal);
}

void set_handler(int signal, void (*handler)(int), int flags, struct sigaction* before = nullptr) {
  struct sigaction action = {};
  action.sa_handler = handler;
  action.sa_flags = flags;
  sigemptyset(&action.sa_mask);
  // A second signal waits until the terminal is back, and no handler is stopped half-way.
  for (const int other : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGTSTP, SIGTTOU}) {
    sigaddset(&action.sa_mask, other);
  }
  sigaction(signal, &action, before);
}

/// For SIGCONT and SIGWINCH. Sends SIGALRM to this handler as long as a read may not have seen
/// them. All functions here are async-signal-safe (POSIX.1-2017, 2.4.3).
void wake_by_signal(int signal) {
  if (signal == SIGCONT) resumed = 1;
  if (signal != SIGALRM) woken = 1;
  if (!has_timer || woken == 0 || reading == 0) return;
  const int saved_errno = errno;
  constexpr itimerspec once_in_40_ms = {{0, 0}, {0, 40000000}};
  set_handler(SIGALRM, wake_by_signal, 0);
  timer_settime(alarm_timer, 0, &once_in_40_ms, nullptr);
  errno = saved_errno;
}

/// For SIGTSTP. Stops by the default action, and goes on after SIGCONT.
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
  // POSIX discards the stop where nobody could continue us, as for the first process of a session.
  // The terminal has to be taken again in that case too.
  wake_by_signal(SIGCONT);
  errno = saved_errno;
}

/// For SIGXFSZ: a write past the size limit of a file fails, and does not end us. Ignoring the
/// signal would do the same here, but the programs that we start would inherit that.
void fail_the_write(int) {}

/// Installs a handler, unless the signal is ignored: nohup and some shells start us like that.
void handle(int signal, void (*handler)(int), int flags) {
  struct sigaction before = {};
  set_handler(signal, handler, flags, &before);
  if (before.sa_handler == SIG_IGN) sigaction(signal, &before, nullptr);
}

// --- Size ---------------------------------------------------------------------------------------

void ask_size() {
  if (size_known) return;
  size_known = true;
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0) size = {};
}

}  // namespace

Terminal terminal;
volatile std::sig_atomic_t woken = 0;
volatile std::sig_atomic_t reading = 0;

// --- Output -------------------------------------------------------------------------------------

void print(const char* form, ...) {
  va_list arguments;
  va_start(arguments, form);
  append_format(output, form, arguments);
  va_end(arguments);
}

void put(std::string_view bytes) { output.append(bytes); }

void begin_screen() {
  terminal.echoed = false;
  screen.clear();
  screen_begin = output.size();
  size_known = false;
}

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

void put_screen() {
  // An editor may have changed the colour. The question at the end of a run does not move the
  // cursor itself: without this move, each redraw would draw it one row lower.
  put("\033[1;37m\033[H");
  size_known = false;
  // The terminal may be narrower by now. The question and the line of the value stay whole: a
  // tabulator or a sequence is in the one, and no line end after the other.
  std::string_view left = screen;
  for (std::size_t end; (end = left.find('\n')) != std::string_view::npos;) {
    const std::string_view line = left.substr(0, end);
    const std::size_t text = line.starts_with('\r') ? 1 : 0;
    const bool plain = line.find_first_of("\t\033") == std::string_view::npos;
    put(line.substr(0, text));
    put(plain ? cut_marked(line.substr(text), line_columns()) : line.substr(text));
    put("\n");
    left.remove_prefix(end + 1);
  }
  put(left);
}

void flush() {
  keep_screen();
  send_output();
}

// --- Modes --------------------------------------------------------------------------------------

void apply(Mode mode) {
  if (terminal.applied == mode) return;
  terminal.applied = mode;
  terminal.echoed = false;
  if (!terminal.present) return;
  termios attributes = terminal.found;
  constexpr tcflag_t line_flags = ICANON | ECHO;
  if (mode == Mode::single_key) {
    attributes.c_lflag &= ~line_flags;
    attributes.c_cc[VMIN] = 1;  // every key counts at once, whatever other programs have set
    attributes.c_cc[VTIME] = 0;
  }
  if (mode == Mode::line) attributes.c_lflag |= line_flags;
  while (tcsetattr(STDIN_FILENO, TCSADRAIN, &attributes) != 0 && errno == EINTR) {
  }
}

void take_again() {
  if (resumed == 0) return;
  resumed = 0;
  held = 1;
  terminal.applied = Mode::as_found;
  put("\033[?25l\033[40m\033[1;37m");
}

void take_terminal() {
  // Stops us while we are in the background (SIGTTOU). Before that, the attributes may be those of
  // the shell's line editor, and Enter would not arrive as a line feed.
  tcdrain(STDIN_FILENO);
  terminal.present = tcgetattr(STDIN_FILENO, &terminal.found) == 0;
  terminal.applied = Mode::as_found;
  held = 1;
  sigevent alarm = {};
  alarm.sigev_notify = SIGEV_SIGNAL;
  alarm.sigev_signo = SIGALRM;
  has_timer = timer_create(CLOCK_MONOTONIC, &alarm, &alarm_timer) == 0;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) {
    handle(signal, end_by_signal, static_cast<int>(SA_RESETHAND));
  }
  handle(SIGTSTP, stop_by_signal, 0);
  handle(SIGCONT, wake_by_signal, 0);
  handle(SIGWINCH, wake_by_signal, 0);
  handle(SIGXFSZ, fail_the_write, 0);
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
  // In the background, another program sets the attributes by now: for instance a shell that saw
  // its child stop before us.
  const pid_t user = tcgetpgrp(STDIN_FILENO);
  const bool background = user >= 0 && user != getpgrp();
  if (!terminal.present || background) return;
  tcsetattr(STDIN_FILENO, TCSANOW, &terminal.found);
  // What has been typed was meant for us. It may be half a password, and the shell would show it as
  // the beginning of a command.
  tcflush(STDIN_FILENO, TCIFLUSH);
}

void single_key_mode() { wanted = Mode::single_key; }
void line_mode() { wanted = Mode::line; }

int terminal_rows() {
  ask_size();
  return size.ws_row > 0 ? size.ws_row : 24;
}

int line_columns() {
  ask_size();
  return (size.ws_col > 0 ? size.ws_col : 80) - 1;
}

// --- Waiting ------------------------------------------------------------------------------------

void pause_us(long microseconds) {
  take_again();
  if (wanted == Mode::single_key) apply(Mode::single_key);
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
  resumed = 1;  // another program has used the terminal, as after a stop
  take_again();
  return status;
}
