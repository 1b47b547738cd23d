#include <gtest/gtest.h>

#include <csignal>

#include "tests/operator.h"

namespace {

constexpr int prompt_row = 17;

std::string rows(Operator& op, int first, int last) {
  std::string text;
  for (int row = first; row <= last; ++row) text += op.row(row) + "\n";
  return text;
}

TEST(Terminal, IsGivenBackWhateverEndsTheRun) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    for (const char* keys : {"", "\r", "\r\rAttic", "\r\rAttic\r"}) {
      SCOPED_TRACE(std::to_string(signal) + " after " + readable(keys));
      const Folder folder;
      const Folder::Files before = folder.files();
      Operator op(folder, {.limits = {{RLIMIT_CORE, 0}}});
      op.type(keys);
      op.screen();
      op.signal(signal);
      EXPECT_EQ(op.exit_status(), 128 + signal);
      EXPECT_TRUE(op.echo());
      EXPECT_TRUE(op.canonical());
      EXPECT_TRUE(op.cursor_visible());
      EXPECT_NE(op.output().rfind("\x1b[0m"), std::string::npos);
      EXPECT_EQ(folder.files(), before);
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
    op.type("\x1a");
    ASSERT_TRUE(op.stopped());
    EXPECT_TRUE(op.echo());
    EXPECT_TRUE(op.canonical());
    EXPECT_TRUE(op.cursor_visible());
    op.signal(SIGCONT);
    EXPECT_EQ(op.screen(), before);
    EXPECT_EQ(op.canonical(), editing);
    EXPECT_EQ(op.echo(), editing);
    EXPECT_EQ(op.cursor_visible(), editing);
    if (editing) op.type("Attic\r");
    op.leave();
  }
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value("kestrel.ini", "System", "Name"), "\"Attic\"");
}

TEST(Terminal, DrawsAgainWhenItsSizeChanges) {
  const Folder folder;
  Operator op(folder);
  op.choose("1");
  const std::string menu = rows(op, 1, 24);
  op.resize(40, 100);
  EXPECT_EQ(rows(op, 1, 24), menu);
  op.choose("1");
  op.type("Atric");
  op.resize(24, 80);
  EXPECT_EQ(op.row(prompt_row), "New value       Atric");
  op.type("\x7f\x7f\x7ftic");  // what was typed before can still be corrected
  EXPECT_EQ(op.row(prompt_row), "New value       Attic");
  op.enter();
  op.leave();
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value("kestrel.ini", "System", "Name"), "\"Attic\"");
}

/// One editing session: names with a correction and with an umlaut, a cancelled and a refused
/// entry, toggles, another language, the exit question.
constexpr const char* session =
    "\r"  // system parameters
    "\rAttik\x7f"
    "c\r"                               // name
    "\x1b[B\rwrong words\x15"           // location: the line erased
    "Dachgescho\xc3\xbf\x7f\xc3\x9f\r"  // a whole character taken back
    "\x1b[B\r\x1b[A\r"                  // contact: cancelled
    "\x1b[B\r\x1b[B\r"                  // language: the second of the list
    "\x1b[B\r"                          // event log
    "\x1b[B\x1b[B\r1001\r"              // rate: refused
    "\x1b[B\r17\r"                      // lower bound
    "\x1b[B\x1b[B\x1b[B\r"              // back
    "\x1b[B\x1b[B\x1b[B\x1b[B\x1b[B\r"  // leave
    "\ryes\r";

TEST(Terminal, LosesNoKeyThatIsTypedAhead) {
  Folder::Files results[3];
  for (const int pace : {0, 1, 2}) {
    const Folder folder;
    Operator op(folder);
    if (pace == 0) {
      op.type(session);
    } else {
      // Key by key, and in pieces that end in the middle of values and of sequences.
      const std::string keys = session;
      for (std::size_t at = 0; at < keys.size(); at += pace == 1 ? 1 : 7) {
        op.screen();
        op.type(std::string_view(keys).substr(at, pace == 1 ? 1 : 7));
      }
    }
    EXPECT_EQ(op.exit_status(), 1);
    results[pace] = folder.files();
    EXPECT_EQ(folder.value("kestrel.ini", "System", "Name"), "\"Attic\"");
    EXPECT_EQ(folder.value("kestrel.ini", "System", "Location"), "\"Dachgescho\xc3\x9f\"");
    EXPECT_EQ(folder.value("kestrel.ini", "System", "Language"), "1");
    EXPECT_EQ(folder.value("kestrel.ini", "System", "DataLogRate"), "60");
    EXPECT_EQ(folder.value("kestrel.ini", "System", "DataLogMin"), "17");
  }
  EXPECT_EQ(results[0], results[1]);
  EXPECT_EQ(results[0], results[2]);
}

TEST(Terminal, ShowsInTheEditorWhatWasTypedBeforeIt) {
  const Folder folder;
  Operator op(folder);
  op.type("\r\rAtt");
  EXPECT_EQ(op.row(prompt_row), "New value       Att");
  op.type("ic\r");
  EXPECT_EQ(op.row(7), "  --> 1 - System name:     Attic");
}

TEST(Terminal, EndsTheRunWhenItIsPulledAway) {
  for (const char* keys : {"", "\r", "\r\rAttic", "\r\rAttic\r"}) {
    SCOPED_TRACE(readable(keys));
    const Folder folder;
    const Folder::Files before = folder.files();
    Operator op(folder);
    op.type(keys);
    op.screen();
    op.hang_up();
    EXPECT_EQ(op.exit_status(), 0);
    EXPECT_EQ(folder.files(), before);
  }
}

TEST(Terminal, EndsTheRunWhereThePipeEnds) {
  struct PipeCase {
    const char* input;
    int status;
  };
  const PipeCase cases[] = {
      {"", 0},
      {"\n", 0},
      {"\n\nAttic", 0},
      {"\n\nAttic\n\033", 0},
      {"\n\nAttic\n\033[A\033[A\033[B\033[B\033[B\033[B\033[B\033[B\033[B\033[B\033[B\033[B\n"
       "\033[B\033[B\033[B\033[B\033[B\ny\n",
       1},
  };
  for (const PipeCase& c : cases) {
    SCOPED_TRACE(readable(c.input));
    const Folder folder;
    Operator op(folder, {.input = c.input});
    EXPECT_EQ(op.exit_status(), c.status);
    EXPECT_EQ(folder.value("kestrel.ini", "System", "Name") == "\"Attic\"", c.status == 1);
  }
}

TEST(Terminal, TakesEndOfFileForTheEndOfALine) {
  const Folder folder;
  Operator op(folder);
  op.open("1/1");
  op.type("\x04");
  EXPECT_EQ(op.row(7), "  --> 1 - System name:     Server room");
  op.leave();
  EXPECT_EQ(op.quit(), 0);
}

TEST(Terminal, GetsEveryScreenInOneWrite) {
  const Folder folder;
  Operator op(folder);
  op.screen();
  std::size_t before = op.output().size();
  op.down();
  op.screen();
  EXPECT_EQ(op.output().substr(before), "\x1b[11;03H   \x1b[12;03H-->");
  op.up();
  op.screen();
  before = op.output().size();
  op.enter();
  op.screen();
  EXPECT_EQ(op.output().substr(before, 12), "\x1b[2J\x1b[00;00H");
}

}  // namespace
