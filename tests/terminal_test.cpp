#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <regex>

#include "tests/failing_calls.h"
#include "tests/operator.h"
#include "tests/tables.h"
#include "tui/diag.h"
#include "tui/editors.h"
#include "tui/terminal.h"

namespace {

TEST(Terminal, IsGivenBackWhateverEndsTheRun) {
  constexpr int hang_up = 0;  // the terminal is pulled away
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, hang_up}) {
    for (const char* keys : {"", "\r", "\r\r", "\r\rAttic", "\r\rAttic\r"}) {
      SCOPED_TRACE(std::to_string(signal) + " after " + readable(keys));
      const Folder folder;
      const Folder::Files before = folder.files();
      Operator op(folder);
      op.type(keys);
      op.screen();
      op.type("half");  // of a line, where there is an editor
      signal == hang_up ? op.hang_up() : op.signal(signal);
      EXPECT_EQ(op.exit_status(), signal == hang_up ? 0 : 128 + signal);
      EXPECT_EQ(folder.files(), before);
      if (signal == hang_up) continue;
      EXPECT_TRUE(op.echo() && op.canonical() && op.cursor_visible());
      EXPECT_NE(op.output().rfind("\x1b[0m"), std::string::npos);
      EXPECT_EQ(op.unread_keys(), "");
    }
  }
}

TEST(Terminal, StopsAndGoesOnInMenusEditorsAndPauses) {
  const Folder folder;
  Operator op(folder);
  for (const bool editing : {false, true}) {
    SCOPED_TRACE(editing ? "editor" : "menu");
    op.open(editing ? "1/1" : "1");
    const std::string before = op.screen();
    op.type(editing ? "half" : "\x1a");
    if (editing) op.signal(SIGTSTP);  // unlike Ctrl-Z, which makes the terminal forget the line
    ASSERT_TRUE(op.stopped());
    EXPECT_TRUE(op.echo() && op.canonical() && op.cursor_visible());
    EXPECT_EQ(op.unread_keys(), "");
    op.signal(SIGCONT);
    EXPECT_EQ(op.screen(), before);
    EXPECT_EQ(op.canonical() && op.echo() && op.cursor_visible(), editing);
    EXPECT_EQ(op.canonical() || op.echo() || op.cursor_visible(), editing);
    if (editing) op.type("Attic\r");
    op.leave();
  }
  op.open("1/6.1");
  op.answer("0");
  op.expect(english("$out_of_range"));
  op.type("\x1a");
  ASSERT_TRUE(op.stopped());
  op.signal(SIGCONT);
  EXPECT_NE(op.arrow(), 0) << "the pause goes on";
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value("kestrel.ini", "System", "Name"), "\"Attic\"");
}

/// As the first process of its session: nobody could continue it, so the stop is discarded.
TEST(Terminal, IsTakenAgainWhenThereIsNoStop) {
  const Folder folder;
  folder.write("alone", "#!/bin/sh\nexec script -qec 'exec ./harrier' /dev/null\n");
  Operator op(folder, {.name = "./alone"});
  op.expect(english("0 - $back"));
  op.type("\x1a");
  op.screen();
  op.down();  // would wait for the end of a line where the mode is not set again
  op.expect(english("--> 2 - $ups_parameters"));
  op.down(4);
  op.enter();
  EXPECT_EQ(op.exit_status(), 0);
}

TEST(Terminal, DrawsAgainWhenItsSizeChanges) {
  const Folder folder;
  Operator op(folder);
  op.choose("1");
  const std::string menu = op.screen();
  op.resize(40, 100);
  EXPECT_EQ(op.screen(), menu);
  op.choose("1");
  op.type("\tAtric");
  op.resize(24, 80);
  EXPECT_TRUE(op.row(17).ends_with("  Atric"));
  EXPECT_TRUE(op.cell(10, 1).look == (Look{7, 0, true}));  // white, not as the value
  // What was typed before can still be corrected, and so can two columns, a quoted key and none.
  op.type("\x7f\x7f\x7f\x18\x16\x15t\u0301\x7f\x7f\x7f\x7ftic");
  EXPECT_TRUE(op.row(17).ends_with("  Attic"));
  op.resize(30, 90);
  EXPECT_TRUE(op.row(17).ends_with("  Attic"));
  op.resize(24, 60);
  EXPECT_EQ(op.row(12), std::string(58, '*') + '>');
  EXPECT_TRUE(op.row(17).ends_with("  Attic"));
  op.resize(30, 90);
  op.type("\r\rEnd");  // the editor also shows what was typed before it
  EXPECT_TRUE(op.row(17).ends_with("  End"));
  op.type("s\r");
  EXPECT_EQ(op.row(7), english("  --> 1 - $system_name:     Ends"));
  op.leave();
  op.leave();
  for (const int cols : {100, 80, 100}) {
    op.resize(24, cols);
    EXPECT_EQ(op.row(2), english("$save_question [y=$yes,n=$no] :"));
  }
}

/// Under a shell, which has modes of its own while it edits a line. Started in the background, the
/// run must not keep those; and a shell that is the run's parent may stop before the run does.
TEST(Terminal, IsTakenWhenTheShellBringsTheRunToTheForeground) {
  constexpr const char* cases[][3] = {
      // the command, what is shown then, the keys after that
      {"./harrier &\r", "[1]", ""},
      {"sh -c './harrier; true'\r", "0 - $back", "\x1a"},
  };
  for (const auto& [start, shown, stop] : cases) {
    SCOPED_TRACE(start);
    const Folder folder;
    Operator op(folder, {.name = "bash", .environment = {{"HOME", folder.path()}}});
    op.type(start);
    op.expect(english(shown));
    op.type(stop);
    op.expect("[1]");  // the shell tells that it has a job
    op.type("printf '\\33[2J'; fg\r");
    op.expect(english("0 - $back"));
    op.type("\r");
    op.expect(english("1 - $system_name:     Server room"));
    op.type("\x03");
  }
}

/// One editing session: values with corrections, cancelled and refused ones, toggles, another
/// language, the exit question.
constexpr std::string_view session =
    "\r"                                     // system parameters
    "\rwrong words\027\027Att\004ik\177c\r"  // name: two words erased, a part sent
    "\x1b[B\rwrong words\x15"                // location: the line erased
    "Dachgescho\xc3\xbf\x7f\xc3\x9f\r"       // a whole character taken back
    "\x1b[B\r\x1b[A\r\r\x04"                 // contact: cancelled, left empty
    "\x1b[B\r\x1b[B\r"                       // language: the second of the list
    "\x1b[B\r\x1b[B\x1b[B\r1001\r"           // event log; rate: refused
    "\x1b[B\r17\r"                           // lower bound
    "\x1b[B\x1b[B\x1b[B\r"                   // back, and leave
    "\x1b[B\x1b[B\x1b[B\x1b[B\x1b[B\r\ryes\r";

TEST(Terminal, LosesNoKeyThatIsTypedAhead) {
  Folder::Files first;
  // At once, key by key, and in pieces that end in the middle of values and of sequences.
  for (const std::size_t pace : {session.size(), std::size_t{1}, std::size_t{7}}) {
    const Folder folder;
    Operator op(folder);
    for (std::size_t at = 0; at < session.size(); at += pace) {
      op.screen();
      op.type(session.substr(at, pace));
    }
    EXPECT_EQ(op.exit_status(), 1);
    const auto value = [&](const char* key) { return folder.value("kestrel.ini", "System", key); };
    EXPECT_EQ(value("Name"), "\"Attic\"");
    EXPECT_EQ(value("Location"), "\"Dachgescho\xc3\x9f\"");
    EXPECT_EQ(value("Contact"), "\"Robin Hale, ext. 4120\"");
    EXPECT_EQ(value("Language") + value("DataLogRate") + value("DataLogMin"), "16017");
    if (first.empty()) first = folder.files();
    EXPECT_EQ(folder.files(), first);
  }
}

TEST(Terminal, EchoesAPastedLineOnce) {
  const Folder folder;
  Operator op(folder);
  op.open("1/1");
  op.answer("Attic");
  op.leave();
  op.leave();
  const std::size_t before = op.output().size();
  op.type("\ny\n");  // Enter alone is no answer
  EXPECT_EQ(op.exit_status(), 1);
  const std::string echo = op.output().substr(before);
  EXPECT_EQ(std::count(echo.begin(), echo.end(), 'y'), 1) << readable(echo);
}

TEST(Terminal, GetsNothingButTheArrowWhenItMoves) {
  const Folder folder;
  Operator op(folder);
  const std::size_t before = op.output().size();
  op.down();
  EXPECT_EQ(op.output().substr(before), "\x1b[11;03H   \x1b[12;03H-->");
}

TEST(Terminal, SendsSingleKeysWhateverItWaitedForBefore) {
  for (const char* found : {"min = 3; time = 7", "min = 0; time = 0"}) {
    SCOPED_TRACE(found);
    const Folder folder;
    const std::string set = std::regex_replace(found, std::regex("[=;]"), "");
    folder.write("set", "#!/bin/sh\nstty " + set + "; ./harrier; stty -a\n");
    Operator op(folder, {.name = "./set"});
    op.down();
    op.expect(english("--> 2 - $ups_parameters"));
    op.down(4);
    op.type("\r");
    op.expect(found);
  }
}

/// The run goes on when its log cannot be written.
TEST(Diagnostics, HarmNobody) {
  for (const char* log : {
           "mkfifo debugs.log",                                                   // no reader
           "mkfifo debugs.log; exec 3<>debugs.log; head -c 65536 /dev/zero >&3",  // full
           "ulimit -f 0",
       }) {
    SCOPED_TRACE(log);
    const Folder folder(demo_with("System.DebugLog=1"));
    folder.write("logged", "#!/bin/sh\n" + std::string(log) + "\nexec ./harrier\n");
    folder.write("vi", "#!/bin/sh\n(echo x >limited); echo status $?; read line\n");
    Operator op(folder, {.name = "./logged"});
    op.open("2/17/5/1/9");
    op.answer("none");
    op.expect(english("$profile_failed"));
    for (int screens = 0; screens < 4; ++screens) op.leave();
    op.open("5/5/1");  // programs that we start have the usual limits
    op.expect(log == std::string_view("ulimit -f 0") ? "status 153" : "status 0");
  }
  const Folder folder;
  folder.use();
  bDebugLog = 1;
  const int operations = with_fault(2, -SIGPIPE, [] { printfc("lost reader"); });
  bDebugLog = 0;
  EXPECT_EQ(operations, 3);  // opened, written, closed
  EXPECT_EQ(folder.read("debugs.log"), "lost reader");
}

/// Runs `work` in a process of its own at a terminal where `keys` are typed, and returns the status
/// with which the process ends by itself within 5 s.
int status_at_terminal(std::string_view keys, int (*work)()) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) _exit(work());
  EXPECT_EQ(write(terminal, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  char shown[4096];
  for (pollfd output{terminal, POLLIN, 0}; poll(&output, 1, 5000) > 0;) {
    if (read(terminal, shown, sizeof shown) <= 0) break;  // the process has ended
  }
  kill(child, SIGKILL);
  int status = -1;
  waitpid(child, &status, 0);
  close(terminal);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// A signal just before a read would wait for the next key if nothing sent it again.
TEST(Terminal, NoticesASignalThatTheReadDoesNotSee) {
  const auto read_woken = [] {
    take_terminal();
    single_key_mode();
    timespec begin{};
    timespec end{};
    clock_gettime(CLOCK_MONOTONIC, &begin);
    Key key = Key::other;
    with_fault(1, -SIGWINCH, [&] { key = read_key(); });  // sent when `read` has been called
    clock_gettime(CLOCK_MONOTONIC, &end);
    const bool soon = end.tv_sec - begin.tv_sec <= 1;
    return key == Key::redraw && soon ? 7 : 1;
  };
  EXPECT_EQ(status_at_terminal("", read_woken), 7);
}

TEST(Numbers, AreCutTo16BitsOnlyIfTheyFit32) {
  const auto ask = [] { return static_cast<int>(get_int(0, 15, nullptr, "refused")); };
  EXPECT_EQ(status_at_terminal("-65535 4294967298 65539\n", ask), 3);
}

}  // namespace
