#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include "tests/failing_calls.h"
#include "tests/operator.h"
#include "tests/tables.h"
#include "tui/diag.h"
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
      EXPECT_EQ(op.unread_keys(), 0);
    }
  }
}

TEST(Terminal, StopsAndGoesOnInMenusAndEditors) {
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
    EXPECT_EQ(op.unread_keys(), 0);
    op.signal(SIGCONT);
    EXPECT_EQ(op.screen(), before);
    EXPECT_EQ(op.canonical() && op.echo() && op.cursor_visible(), editing);
    EXPECT_EQ(op.canonical() || op.echo() || op.cursor_visible(), editing);
    if (editing) op.type("Attic\r");
    op.leave();
  }
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(ini_value(folder.read("kestrel.ini"), "System", "Name"), "\"Attic\"");
}

TEST(Terminal, GetsNothingButTheArrowWhenItMoves) {
  const Folder folder;
  Operator op(folder);
  const std::size_t before = op.output().size();
  op.down();
  EXPECT_EQ(op.output().substr(before), "\x1b[11;03H   \x1b[12;03H-->");
}

TEST(Diagnostics, GoOnWhenTheReaderOfTheLogLeaves) {
  const Folder folder;
  folder.use();
  bDebugLog = 1;
  const int operations = with_fault(2, -SIGPIPE, [] { printfc("lost reader"); });
  bDebugLog = 0;
  EXPECT_EQ(operations, 3);  // opened, written, closed
  EXPECT_EQ(folder.read("debugs.log"), "lost reader");
}

/// A signal just before a read would wait for the next key if nothing sent it again.
TEST(Terminal, NoticesASignalThatTheReadDoesNotSee) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    take_terminal();
    single_key_mode();
    Key key = Key::other;
    with_fault(1, -SIGWINCH, [&] { key = read_key(); });  // sent when `read` has been called
    _exit(key == Key::redraw ? 7 : 1);
  }
  pollfd end{terminal, 0, 0};  // a hang-up is reported anyway
  EXPECT_EQ(poll(&end, 1, 2000), 1);
  kill(child, SIGKILL);
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, W_EXITCODE(7, 0));
  close(terminal);
}

}  // namespace
