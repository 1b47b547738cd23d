#include "tests/operator.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <regex>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace {

using Clock = std::chrono::steady_clock;

/// A save waits for the disk, which can be busy with the work of others.
constexpr std::chrono::minutes patience(2);

void check(bool done, const char* what) {
  if (!done) throw std::system_error(errno, std::generic_category(), what);
}

winsize size_of(int rows, int cols) {
  return {static_cast<unsigned short>(rows), static_cast<unsigned short>(cols), 0, 0};
}

/// Becomes the program, in the foreground of its terminal.
[[noreturn]] void run_program(const Folder& folder, const Options& options) {
  setpgid(0, 0);
  std::signal(SIGTTOU, SIG_IGN);  // which the background would get for this
  tcsetpgrp(STDIN_FILENO, getpid());
  for (const int number : {SIGTTOU, SIGHUP, SIGINT, SIGQUIT}) std::signal(number, SIG_DFL);
  const rlimit no_core{0, 0};
  setrlimit(RLIMIT_CORE, &no_core);
  setenv("TERM", "xterm", 1);
  setenv("PATH", (folder.path() + ":" + std::getenv("PATH")).c_str(), 1);
  for (const auto& [name, value] : options.environment) setenv(name.c_str(), value.c_str(), 1);
  if (chdir(folder.path().c_str()) == 0)
    execlp(options.name.c_str(), options.name.c_str(), nullptr);
  _exit(127);
}

/// The life of the session's leader, in a process of its own: starts the program as a shell does,
/// and stays until it is killed. The terminal would hang up with its end.
[[noreturn]] void lead_session(const Folder& folder, const Options& options, int slave,
                               int report) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  std::signal(SIGHUP, SIG_IGN);
  login_tty(slave);
  // Nothing else stays open: a terminal of the same case must not be kept alive from here.
  report = dup3(report, STDERR_FILENO + 1, O_CLOEXEC);
  close_range(static_cast<unsigned>(report) + 1, ~0U, 0);

  const pid_t program = fork();
  if (program == 0) run_program(folder, options);
  int status = -1;
  waitpid(program, &status, 0);
  if (write(report, &status, sizeof status) < 0) _exit(1);
  while (true) pause();
}

/// The state of a process as "/proc" has it, a letter.
char state_of(pid_t pid) {
  const std::string stat = read_file("/proc/" + std::to_string(pid) + "/stat");
  const std::size_t name_end = stat.rfind(") ");
  return name_end == std::string::npos ? '?' : stat[name_end + 2];
}

/// Whether the process and everything that it has started wait for something outside.
bool is_waiting(pid_t pid) {
  const char state = state_of(pid);
  if (state != 'S' && state != 'T') return false;
  const std::string id = std::to_string(pid);
  std::istringstream children(read_file("/proc/" + id + "/task/" + id + "/children"));
  for (pid_t child; children >> child;) {
    if (!is_waiting(child)) return false;
  }
  return true;
}

int status_number(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int colour_number(const VTermColor& colour) {
  return VTERM_COLOR_IS_INDEXED(&colour) ? colour.indexed.idx : -1;
}

/// The size of the bytes without a UTF-8 character at their end that has not come whole.
std::size_t whole_characters(std::string_view bytes) {
  std::size_t last = bytes.size();
  while (last > 0 && (bytes[--last] & 0xC0) == 0x80) continue;
  const auto byte = static_cast<unsigned char>(last < bytes.size() ? bytes[last] : 0);
  const std::size_t width = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
  return last + width > bytes.size() ? last : bytes.size();
}

std::string squeezed(std::string_view text) {
  static const std::regex blanks("[ \n]+");
  return std::regex_replace(std::string(text), blanks, " ");
}

}  // namespace

std::string readable(std::string_view keys) { return testing::PrintToString(std::string(keys)); }

Operator::Operator(int rows, int cols)
    : rows_(rows),
      cols_(cols),
      terminal_(vterm_new(rows, cols)),
      screen_(vterm_obtain_screen(terminal_)) {
  vterm_set_utf8(terminal_, 1);
  vterm_screen_reset(screen_, 1);
}

// From here on the destructor cleans up, even when this constructor throws.
Operator::Operator(const Folder& folder, const Options& options)
    : Operator(options.rows, options.cols) {
  const winsize size = size_of(rows_, cols_);
  check(openpty(&master_, &slave_, nullptr, nullptr, &size) == 0, "openpty");
  termios modes{};
  check(tcgetattr(slave_, &modes) == 0, "tcgetattr");
  modes.c_iflag |= IUTF8;  // as terminals of today are set
  check(tcsetattr(slave_, TCSANOW, &modes) == 0, "tcsetattr");
  int report[2];
  check(pipe2(report, O_NONBLOCK) == 0, "pipe");
  report_ = report[0];
  fcntl(master_, F_SETFL, O_NONBLOCK);

  leader_ = fork();
  check(leader_ >= 0, "fork");
  if (leader_ == 0) lead_session(folder, options, slave_, report[1]);
  close(report[1]);
  const auto started = [&] {
    pid_ = tcgetpgrp(master_);
    return status_ || (pid_ > 0 && pid_ != leader_);
  };
  await(started, "the start of the program");
  settle();
}

Operator::~Operator() {
  if (pid_ > 0 && !status_) kill(pid_, SIGKILL);
  while (pid_ > 0 && !status_) pump(1);
  pump(0);
  if (leader_ > 0) {
    kill(leader_, SIGKILL);
    waitpid(leader_, nullptr, 0);
  }
  for (const int fd : {master_, slave_, report_}) close(fd);
  vterm_free(terminal_);
  static const std::regex complaint("ERROR: (Address|Leak)Sanitizer|runtime error:");
  if (std::regex_search(output_, complaint)) {
    ADD_FAILURE() << "A sanitizer complains. The steps: " << trail_ << "\n" << output_;
  }
}

/// Takes in what the leader reports and what the program has written, waiting that long for it.
void Operator::pump(int milliseconds) {
  pollfd sources[] = {{master_, POLLIN, 0}, {report_, POLLIN, 0}};
  poll(sources, std::size(sources), milliseconds);
  int status;
  if (read(report_, &status, sizeof status) == sizeof status) status_ = status;
  char bytes[16384];
  for (ssize_t size; (size = read(master_, bytes, sizeof bytes)) > 0;) {
    output_.append(bytes, static_cast<std::size_t>(size));
  }
  // libvterm 0.1 shows a character wrongly that comes in two parts.
  const std::string_view fresh = std::string_view(output_).substr(emulated_);
  const std::size_t size = whole_characters(fresh);
  vterm_input_write(terminal_, fresh.data(), size);
  emulated_ += size;
}

void Operator::settle() {
  const auto settled = [&] {
    pump(0);
    pollfd typed{slave_, POLLIN, 0};
    poll(&typed, 1, 0);  // makes the terminal take in what is on its way
    int keys = 0;        // not yet read; the beginning of a line does not count
    ioctl(slave_, FIONREAD, &keys);
    if (!status_ && (keys > 0 || !is_waiting(pid_))) return false;
    const std::size_t before = output_.size();
    pump(0);
    return output_.size() == before;
  };
  await(settled, "the program to wait");
}

void Operator::await(const std::function<bool()>& condition, const std::string& what) {
  // A virtual machine may stand still for minutes, so a long step counts as a short one.
  constexpr std::chrono::milliseconds longest_step(100);
  Clock::duration waited(0);
  for (auto before = Clock::now(); !condition();) {
    if (waited > patience) lose("Waited in vain for " + what);
    pump(1);
    const auto now = Clock::now();
    waited += std::min<Clock::duration>(now - before, longest_step);
    before = now;
  }
}

void Operator::lose(const std::string& what) {
  constexpr std::size_t shown = 400;
  ADD_FAILURE() << what << ". The program "
                << (status_ ? "ended with " + std::to_string(status_number(*status_)) : "runs")
                << ".\nThe steps: " << trail_.substr(trail_.size() - std::min(shown, trail_.size()))
                << "\nThe screen:\n"
                << text({0, rows_, 0, cols_});
  throw std::runtime_error("the case cannot go on");
}

void Operator::type(std::string_view keys) {
  trail_ += readable(keys);
  const auto typed = [&] {
    const ssize_t size = write(master_, keys.data(), std::min<std::size_t>(keys.size(), 1024));
    if (size > 0) keys.remove_prefix(static_cast<std::size_t>(size));
    return keys.empty() || status_;
  };
  await(typed, "the program to take more keys");
}

void Operator::point(int row) {
  await([&] { return arrow() != 0 || status_; }, "a menu");
  for (int at = arrow(); at != row;) {
    at < row ? down() : up();
    const int now = arrow();
    const bool nearer = now != 0 && std::abs(now - row) < std::abs(at - row);
    if (!nearer) lose("The arrow does not move towards row " + std::to_string(row));
    at = now;
  }
}

void Operator::choose(std::string_view number) {
  await([&] { return arrow() != 0 || status_; }, "a menu");
  trail_.append("[").append(number).append("]");
  const std::regex item("^ *(-->)? *" + std::string(number) + " - ");
  for (int i = 1; i <= rows_; ++i) {
    if (!std::regex_search(row_now(i), item)) continue;
    point(i);
    enter();
    return settle();
  }
  lose("There is no item " + std::string(number));
}

void Operator::open(std::string_view path) {
  std::istringstream items{std::string(path)};
  for (std::string number; std::getline(items, number, '/');) choose(number);
}

void Operator::answer(std::string_view line) {
  await([&] { return canonical() || status_; }, "a question");
  type(line);
  if (!line.ends_with('\r')) enter();
}

int Operator::quit(std::string_view answer) {
  do {
    leave();
  } while (!status_ && !canonical());
  if (status_.has_value() != answer.empty()) {
    lose(status_ ? "The program does not ask whether to save" : "The program asks whether to save");
  }
  if (!status_) this->answer(answer);
  return exit_status();
}

/// A part of the screen, from row and column 0 up to and without its ends; none beyond the screen.
/// The blanks at the end of a row may be missing.
std::string Operator::text(const VTermRect& part) const {
  if (part.end_row > rows_ || part.end_col > cols_) return "";
  constexpr int longest_cell = 4 * VTERM_MAX_CHARS_PER_CELL;
  const int cells = (part.end_row - part.start_row) * (part.end_col - part.start_col + 1);
  std::string text(static_cast<std::size_t>(cells * longest_cell), '\0');
  text.resize(vterm_screen_get_text(screen_, text.data(), text.size(), part));
  return text;
}

std::string Operator::row_now(int number) const {
  std::string row = text({number - 1, number, 0, cols_});
  row.erase(row.find_last_not_of(' ') + 1);
  return row;
}

std::string Operator::row(int number) {
  settle();
  return row_now(number);
}

std::string Operator::screen() {
  settle();
  std::string screen;
  for (int i = 1; i <= rows_; ++i) screen += row_now(i) + "\n";
  screen.erase(screen.find_last_not_of('\n') + 1);
  return screen + "\n";
}

int Operator::arrow() {
  settle();
  const std::string shown = text({0, rows_, 0, cols_});
  const std::size_t mark = shown.find(" -->");  // a rule may be cut: "---->"
  if (mark == std::string::npos) return 0;
  return 1 + static_cast<int>(std::count(shown.data(), shown.data() + mark, '\n'));
}

bool Operator::shows(std::string_view text) {
  return squeezed(screen()).find(squeezed(text)) != std::string::npos;
}

void Operator::expect(std::string_view text) {
  await([&] { return shows(text) || status_; }, "\"" + std::string(text) + "\"");
  if (!shows(text)) lose("The screen does not show \"" + std::string(text) + "\"");
}

Cell Operator::cell(int row, int col) const {
  VTermScreenCell found{};
  vterm_screen_get_cell(screen_, {row - 1, col - 1}, &found);
  const Look look{colour_number(found.fg), colour_number(found.bg), found.attrs.bold != 0};
  // The right half of a wide character has no text.
  return {found.chars[0] == 0 ? " " : text({row - 1, row, col - 1, col}), look};
}

bool Operator::cursor_visible() {
  const std::string written = output();
  const auto last = [&](const char* sequence) { return written.rfind(sequence) + 1; };
  return last("\x1b[?25h") >= last("\x1b[?25l");  // 0 where there is none
}

int Operator::bells() {
  settle();
  return static_cast<int>(std::count(output_.begin(), output_.end(), '\a'));
}

bool Operator::mode(tcflag_t flag) {
  settle();
  termios modes{};
  check(tcgetattr(slave_, &modes) == 0, "tcgetattr");
  return (modes.c_lflag & flag) != 0;
}

int Operator::unread_keys() {
  settle();
  termios modes{};
  check(tcgetattr(slave_, &modes) == 0, "tcgetattr");
  termios single_keys = modes;
  single_keys.c_lflag &= ~static_cast<tcflag_t>(ICANON);
  int keys = 0;
  for (const termios* each : {&single_keys, &modes}) {
    check(tcsetattr(slave_, TCSANOW, each) == 0, "tcsetattr");
    if (each != &modes) ioctl(slave_, FIONREAD, &keys);
  }
  return keys;
}

void Operator::resize(int rows, int cols) {
  settle();
  trail_ += "<" + std::to_string(rows) + "x" + std::to_string(cols) + ">";
  rows_ = rows;
  cols_ = cols;
  vterm_set_size(terminal_, rows, cols);
  const winsize size = size_of(rows, cols);
  check(ioctl(master_, TIOCSWINSZ, &size) == 0, "resize");
}

void Operator::signal(int number) {
  settle();
  trail_ += "<signal " + std::to_string(number) + ">";
  if (!status_) kill(pid_, number);
}

void Operator::hang_up() {
  settle();
  trail_ += "<hang-up>";
  close(slave_);
  close(master_);
  slave_ = master_ = -1;
}

bool Operator::stopped() {
  await([&] { return status_ || state_of(pid_) == 'T'; }, "the program to stop");
  settle();
  return !status_;
}

int Operator::exit_status() {
  await([&] { return status_.has_value(); }, "the end of the program");
  settle();
  return status_number(*status_);
}

bool Operator::ended() {
  settle();
  return status_.has_value();
}

std::string Operator::output() {
  settle();
  return output_;
}
