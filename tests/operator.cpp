#include "tests/operator.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr std::chrono::seconds patience(60);
#else
constexpr std::chrono::seconds patience(10);
#endif

constexpr const char* up_key = "\x1b[A";
constexpr const char* down_key = "\x1b[B";
constexpr std::string_view arrow_mark = "-->";
constexpr std::size_t trail_length = 400;  // of the steps that a failure shows

/// What the leader of the session tells: first the process of the program, then its end.
struct Report {
  enum Kind : int { started, ended } kind;
  int value;
};

void check(bool done, const char* what) {
  if (!done) throw std::system_error(errno, std::generic_category(), what);
}

/// Adds sanitizer options that make a report end the program with status 99.
void make_reports_fail(const char* name) {
  const char* present = std::getenv(name);
  const std::string options = std::string(present == nullptr ? "" : present) +
                              ":exitcode=99:halt_on_error=1:abort_on_error=0:color=never";
  setenv(name, options.c_str(), 1);
}

/// The life of the session's leader, in a process of its own: starts the program in the foreground,
/// as a shell does, and stays until it is killed. The terminal would hang up with its end.
[[noreturn]] void lead_session(const Folder& folder, const Options& options, int slave, int report,
                               int input) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  std::signal(SIGHUP, SIG_IGN);
  setsid();
  ioctl(slave, TIOCSCTTY, 0);
  for (int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(slave, fd);
  // Other terminals of the same case must not be kept alive from here.
  constexpr int safe = 100;
  report = fcntl(report, F_DUPFD_CLOEXEC, safe);
  if (input >= 0) input = fcntl(input, F_DUPFD_CLOEXEC, safe);
  close_range(STDERR_FILENO + 1, safe - 1, 0);

  setenv("TERM", "xterm", 1);
  setenv("PATH", (folder.path() + ":" + std::getenv("PATH")).c_str(), 1);
  for (const auto& [name, value] : options.environment) setenv(name.c_str(), value.c_str(), 1);
  make_reports_fail("ASAN_OPTIONS");
  make_reports_fail("UBSAN_OPTIONS");

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addtcsetpgrp_np(&actions, STDOUT_FILENO);
  if (input >= 0) posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes,
                           POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
  sigset_t signals;
  sigfillset(&signals);
  posix_spawnattr_setsigdefault(&attributes, &signals);
  sigemptyset(&signals);
  posix_spawnattr_setsigmask(&attributes, &signals);

  if (chdir(folder.path().c_str()) != 0) _exit(1);
  for (const auto& [resource, value] : options.limits) {
    const rlimit limit{value, value};
    setrlimit(resource, &limit);
  }
  std::string name = options.name;
  char* const arguments[] = {name.data(), nullptr};
  pid_t program = -1;
  const int error = posix_spawnp(&program, name.c_str(), &actions, &attributes, arguments, environ);
  Report message{Report::started, program};
  if (write(report, &message, sizeof message) < 0) _exit(1);
  constexpr int not_started = 127 << 8;
  message = {Report::ended, not_started};
  if (error == 0) {
    while (waitpid(program, &message.value, 0) < 0 && errno == EINTR) continue;
  }
  if (write(report, &message, sizeof message) < 0) _exit(1);
  while (true) pause();
}

/// Whether the process and everything that it has started wait for something outside.
bool is_waiting(pid_t pid) {
  const std::string folder = "/proc/" + std::to_string(pid);
  const std::string stat = read_file(folder + "/stat");
  const std::size_t name_end = stat.rfind(')');
  if (name_end == std::string::npos || name_end + 2 >= stat.size()) return false;
  const char state = stat[name_end + 2];
  if (state != 'S' && state != 'T') return false;
  std::istringstream children(read_file(folder + "/task/" + std::to_string(pid) + "/children"));
  for (pid_t child; children >> child;) {
    if (!is_waiting(child)) return false;
  }
  return true;
}

bool is_stopped(pid_t pid) {
  const std::string stat = read_file("/proc/" + std::to_string(pid) + "/stat");
  return stat.find(") T ") != std::string::npos;
}

void append_utf8(std::string& text, std::uint32_t code) {
  if (code < 0x80) return text.push_back(static_cast<char>(code));
  const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
  constexpr std::uint32_t lead[] = {0, 0xC0, 0xE0, 0xF0};
  text.push_back(static_cast<char>(lead[more] | code >> 6 * more));
  for (int i = more - 1; i >= 0; --i)
    text.push_back(static_cast<char>(0x80 | (code >> 6 * i & 0x3F)));
}

int colour_number(const VTermColor& colour, bool is_default) {
  if (is_default || !VTERM_COLOR_IS_INDEXED(&colour)) return -1;
  return colour.indexed.idx;
}

std::string squeezed(std::string_view text) {
  std::string result;
  for (const char c : text) {
    const char shown = c == '\n' ? ' ' : c;
    if (shown != ' ' || !result.ends_with(' ')) result += shown;
  }
  return result;
}

/// The text of an item's row behind its arrow and indentation.
std::string_view item_text(std::string_view row) {
  const auto skip_blanks = [&] {
    row.remove_prefix(std::min(row.find_first_not_of(' '), row.size()));
  };
  skip_blanks();
  if (row.starts_with(arrow_mark)) row.remove_prefix(arrow_mark.size());
  skip_blanks();
  return row;
}

}  // namespace

std::string readable(std::string_view keys) {
  static const std::pair<std::string_view, std::string_view> names[] = {
      {up_key, "<Up>"}, {down_key, "<Down>"}, {"\r", "<Enter>"}, {"\n", "<LF>"}, {"\x1b", "<Esc>"},
  };
  std::string text;
  while (!keys.empty()) {
    const auto* known = std::find_if(std::begin(names), std::end(names), [&](const auto& name) {
      return keys.starts_with(name.first);
    });
    if (known != std::end(names)) {
      text += known->second;
      keys.remove_prefix(known->first.size());
      continue;
    }
    const auto byte = static_cast<unsigned char>(keys.front());
    char code[8];
    std::snprintf(code, sizeof code, byte < 0x20 || byte == 0x7F ? "<%02X>" : "%c", byte);
    text += code;
    keys.remove_prefix(1);
  }
  return text;
}

Operator::Operator(int rows, int cols)
    : rows_(rows),
      cols_(cols),
      terminal_(vterm_new(rows, cols)),
      screen_(vterm_obtain_screen(terminal_)) {
  static VTermScreenCallbacks callbacks{};
  callbacks.settermprop = [](VTermProp property, VTermValue* value, void* user) {
    auto& visible = static_cast<Operator*>(user)->cursor_visible_;
    if (property == VTERM_PROP_CURSORVISIBLE) visible = value->boolean != 0;
    return 1;
  };
  callbacks.bell = [](void* user) { return ++static_cast<Operator*>(user)->bells_; };
  vterm_set_utf8(terminal_, 1);
  vterm_screen_set_callbacks(screen_, &callbacks, this);
  vterm_screen_reset(screen_, 1);
}

// From here on the destructor cleans up, even when this constructor throws.
Operator::Operator(const Folder& folder, const Options& options)
    : Operator(options.rows, options.cols) {
  const winsize size{static_cast<unsigned short>(rows_), static_cast<unsigned short>(cols_), 0, 0};
  check(openpty(&master_, &slave_, nullptr, nullptr, &size) == 0, "openpty");
  termios modes{};
  check(tcgetattr(slave_, &modes) == 0, "tcgetattr");
  modes.c_iflag |= IUTF8;  // as terminals of today are set
  check(tcsetattr(slave_, TCSANOW, &modes) == 0, "tcsetattr");
  int report[2];
  check(pipe2(report, O_CLOEXEC) == 0, "pipe");
  int input[2] = {-1, -1};
  if (options.input) {
    check(pipe2(input, O_CLOEXEC) == 0, "pipe");
    check(fcntl(input[1], F_SETPIPE_SZ, 1 << 20) >= 0, "pipe size");
    const ssize_t written = write(input[1], options.input->data(), options.input->size());
    check(written == static_cast<ssize_t>(options.input->size()), "pipe");
    close(input[1]);
  }
  for (int fd : {master_, slave_}) fcntl(fd, F_SETFD, FD_CLOEXEC);
  fcntl(master_, F_SETFL, O_NONBLOCK);
  fcntl(report[0], F_SETFL, O_NONBLOCK);

  type(options.typed_ahead);
  leader_ = fork();
  check(leader_ >= 0, "fork");
  if (leader_ == 0) lead_session(folder, options, slave_, report[1], input[0]);
  close(report[1]);
  if (input[0] >= 0) close(input[0]);
  report_ = report[0];
  await([&] { return pid_ > 0 || status_; }, "the start of the program");
  settle();
}

Operator::~Operator() {
  if (!status_ && pid_ > 0) {
    kill(pid_, SIGKILL);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!status_ && std::chrono::steady_clock::now() < deadline) pump(1);
  }
  pump(0);
  if (leader_ > 0) {
    kill(leader_, SIGKILL);
    while (waitpid(leader_, nullptr, 0) < 0 && errno == EINTR) continue;
  }
  for (int fd : {master_, slave_, report_}) {
    if (fd >= 0) close(fd);
  }
  vterm_free(terminal_);
  for (const char* complaint :
       {"ERROR: AddressSanitizer", "ERROR: LeakSanitizer", "runtime error:"}) {
    if (output_.find(complaint) != std::string::npos) {
      ADD_FAILURE() << "A sanitizer complains. The steps: " << trail_ << "\n" << output_;
      break;
    }
  }
}

/// Takes in what the program has written and what the leader reports, waiting that long for it.
void Operator::pump(int milliseconds) {
  pollfd sources[] = {{master_, POLLIN, 0}, {report_, POLLIN, 0}};
  if (poll(sources, std::size(sources), milliseconds) < 0) return;
  char bytes[16384];
  ssize_t size;
  while (master_ >= 0 && (size = read(master_, bytes, sizeof bytes)) > 0) {
    output_.append(bytes, static_cast<std::size_t>(size));
    vterm_input_write(terminal_, bytes, static_cast<std::size_t>(size));
    vterm_screen_flush_damage(screen_);
  }
  Report message;
  while (report_ >= 0 && read(report_, &message, sizeof message) == sizeof message) {
    if (message.kind == Report::started) pid_ = message.value;
    if (message.kind == Report::ended) status_ = message.value;
  }
}

/// Whether the program has read every key that was typed. The beginning of a line that is being
/// collected does not count.
bool Operator::all_keys_read() const {
  if (slave_ < 0) return true;
  pollfd typed{slave_, POLLIN, 0};
  poll(&typed, 1, 0);  // also makes the terminal take in what is on its way
  int count = 0;
  return ioctl(slave_, FIONREAD, &count) != 0 || count == 0;
}

bool Operator::settled() {
  pump(0);
  if (status_) {
    pump(0);  // what it wrote last
    return true;
  }
  if (!all_keys_read() || !is_waiting(pid_)) return false;
  const std::size_t before = output_.size();
  pump(0);
  return output_.size() == before && !status_;
}

void Operator::settle() {
  await([&] { return settled(); }, "the program to wait");
}

void Operator::await(const std::function<bool()>& condition, const std::string& what) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) lose("Waited in vain for " + what);
    pump(1);
  }
}

void Operator::note(std::string_view step) {
  trail_ += step;
  if (trail_.size() > trail_length) trail_ = "..." + trail_.substr(trail_.size() - trail_length);
}

void Operator::lose(const std::string& what) {
  std::string state = "The program waits.";
  if (status_ && WIFEXITED(*status_)) {
    state = "The program has ended with status " + std::to_string(WEXITSTATUS(*status_)) + ".";
  } else if (status_) {
    state = "The program was ended by signal " + std::to_string(WTERMSIG(*status_)) + ".";
  } else if (!is_waiting(pid_)) {
    state = "The program is busy.";
  }
  ADD_FAILURE() << what << ". " << state << "\nThe steps: " << trail_ << "\nThe screen:\n"
                << screen_now();
  throw std::runtime_error("the case cannot go on");
}

void Operator::type(std::string_view keys) {
  note(readable(keys));
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!keys.empty() && master_ >= 0) {
    const ssize_t size = write(master_, keys.data(), std::min<std::size_t>(keys.size(), 1024));
    if (size > 0) keys.remove_prefix(static_cast<std::size_t>(size));
    pump(size > 0 ? 0 : 1);
    if (status_) return;
    if (std::chrono::steady_clock::now() > deadline) lose("The program takes no more keys");
  }
}

void Operator::up(int times) {
  while (times-- > 0) type(up_key);
}

void Operator::down(int times) {
  while (times-- > 0) type(down_key);
}

void Operator::point(int row) {
  await([&] { return settled() && (arrow_now() != 0 || status_); }, "a menu");
  for (int steps = 0; arrow_now() != row; ++steps) {
    const int before = arrow_now();
    type(before < row ? down_key : up_key);
    settle();
    if (arrow_now() == before || arrow_now() == 0 || steps > 2 * rows_) {
      lose("The arrow cannot be moved from row " + std::to_string(before) + " to row " +
           std::to_string(row));
    }
  }
}

void Operator::choose(std::string_view number) {
  await([&] { return settled() && (arrow_now() != 0 || status_); }, "a menu");
  note("[" + std::string(number) + "]");
  const std::string lead = std::string(number) + " - ";
  for (int i = 1; i <= rows_; ++i) {
    const std::string text = row_now(i);
    if (!item_text(text).starts_with(lead)) continue;
    point(i);
    enter();
    return settle();
  }
  lose("There is no item " + std::string(number));
}

void Operator::open(std::string_view path) {
  while (true) {
    const std::size_t slash = path.find('/');
    choose(path.substr(0, slash));
    if (slash == std::string_view::npos) return;
    path.remove_prefix(slash + 1);
  }
}

void Operator::answer(std::string_view line) {
  await([&] { return settled() && (mode_now(ICANON) || status_); }, "a question");
  type(line);
  if (!line.ends_with('\r')) enter();
}

int Operator::quit(std::string_view answer) {
  do {
    leave();
  } while (!status_ && !canonical());
  if (!status_) {
    if (answer.empty()) lose("The program asks whether to save");
    type(answer);
    enter();
  } else if (!answer.empty()) {
    lose("The program does not ask whether to save");
  }
  return exit_status();
}

Cell Operator::cell_now(int row, int col) const {
  VTermScreenCell found{};
  vterm_screen_get_cell(screen_, {row - 1, col - 1}, &found);
  Cell cell{.text = "",
            .look = {colour_number(found.fg, VTERM_COLOR_IS_DEFAULT_FG(&found.fg)),
                     colour_number(found.bg, VTERM_COLOR_IS_DEFAULT_BG(&found.bg)),
                     found.attrs.bold != 0}};
  constexpr std::uint32_t right_half = UINT32_MAX;  // of a wide character
  if (found.chars[0] == right_half) return cell;
  if (found.chars[0] == 0) cell.text = " ";
  for (std::uint32_t code : found.chars) {
    if (code == 0) break;
    append_utf8(cell.text, code);
  }
  return cell;
}

std::string Operator::row_now(int number) const {
  std::string text;
  for (int col = 1; col <= cols_; ++col) text += cell_now(number, col).text;
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string Operator::screen_now() const {
  std::string text;
  for (int i = 1; i <= rows_; ++i) text += row_now(i) + "\n";
  text.erase(text.find_last_not_of('\n') + 1);
  return text + "\n";
}

bool Operator::shows_now(std::string_view text) const {
  return squeezed(screen_now()).find(squeezed(text)) != std::string::npos;
}

int Operator::arrow_now() const {
  for (int i = 1; i <= rows_; ++i) {
    if (row_now(i).find(arrow_mark) != std::string::npos) return i;
  }
  return 0;
}

std::string Operator::row(int number) {
  settle();
  return row_now(number);
}

std::string Operator::screen() {
  settle();
  return screen_now();
}

int Operator::arrow() {
  settle();
  return arrow_now();
}

bool Operator::shows(std::string_view text) {
  settle();
  return shows_now(text);
}

void Operator::expect(std::string_view text) {
  await([&] { return settled() && (shows_now(text) || status_); }, "\"" + std::string(text) + "\"");
  if (!shows_now(text)) lose("The screen does not show \"" + std::string(text) + "\"");
}

Cell Operator::cell(int row, int col) {
  settle();
  return cell_now(row, col);
}

bool Operator::cursor_visible() {
  settle();
  return cursor_visible_;
}

int Operator::bells() {
  settle();
  return bells_;
}

bool Operator::mode(tcflag_t flag) {
  settle();
  return mode_now(flag);
}

bool Operator::mode_now(tcflag_t flag) const {
  termios modes{};
  check(tcgetattr(slave_, &modes) == 0, "tcgetattr");
  return (modes.c_lflag & flag) != 0;
}

void Operator::resize(int rows, int cols) {
  settle();
  note("<" + std::to_string(rows) + "x" + std::to_string(cols) + ">");
  rows_ = rows;
  cols_ = cols;
  vterm_set_size(terminal_, rows, cols);
  const winsize size{static_cast<unsigned short>(rows), static_cast<unsigned short>(cols), 0, 0};
  check(ioctl(master_, TIOCSWINSZ, &size) == 0, "resize");
}

void Operator::signal(int number) {
  settle();
  note("<signal " + std::to_string(number) + ">");
  if (!status_) kill(pid_, number);
}

void Operator::hang_up() {
  settle();
  note("<hang-up>");
  close(slave_);
  close(master_);
  slave_ = master_ = -1;
}

bool Operator::stopped() {
  await([&] { return pump(0), status_ || is_stopped(pid_); }, "the program to stop");
  settle();
  return !status_;
}

int Operator::exit_status() {
  await([&] { return pump(0), status_.has_value(); }, "the end of the program");
  settle();
  return WIFEXITED(*status_) ? WEXITSTATUS(*status_) : 128 + WTERMSIG(*status_);
}

bool Operator::ended() {
  settle();
  return status_.has_value();
}

std::string Operator::output() {
  settle();
  return output_;
}
