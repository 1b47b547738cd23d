#include <gtest/gtest.h>

#include <string>

#include "tests/arrow_path.h"
#include "tests/operator.h"

namespace {

constexpr const char* file = "group_00.ini";

std::string centred(const std::string& title) {
  const std::size_t left = (62 - title.size()) / 2;
  return "****" + std::string(left, ' ') + title + std::string(62 - left - title.size(), ' ') +
         "****";
}

TEST(GroupJobs, AreStoredWhenTheEditorIsLeft) {
  struct Case {
    std::string item;  // on the screen of the event
    std::string title;
    std::string key;
    const char* even_arrow;
    const char* odd_arrow;
  };
  const Case cases[] = {
      {"2", "Write to the event log", "Log", "1 2 4 2 1", "1 2 4 2 1"},
      {"3", "Execute a program", "Execute", "1 2 3 4 6 4 3 2 1", "1 2 3 5 3 2 1"},
      {"4", "Local message", "LocalMessage", "1 2 3 5 3 2 1", "1 2 4 2 1"},
      {"5", "Network message", "NetMessage", "1 2 3 5 3 2 1", "1 2 4 2 1"},
      {"6", "Operating system shutdown", "Shutdown", "1 3 1", "1 3 1"},
      {"7", "E-mail", "Email", "1 2 4 2 1", "1 2 4 2 1"},
      {"8", "SMS", "SMS", "1 2 4 2 1", "1 2 4 2 1"},
      {"9", "Telephone call", "Call", "1 2 4 2 1", "1 2 4 2 1"},
  };
  const Folder folder;
  folder.set(file, "Event_00", "ShutdownDelay", "777");
  std::string expected = folder.read(file);
  Operator op(folder);
  for (const bool odd : {false, true}) {
    const std::string event = odd ? "Event_01" : "Event_00";
    op.open(odd ? "2" : "2/17/5/1/8/1");
    for (const Case& c : cases) {
      SCOPED_TRACE(c.key);
      const bool was_on = ini_value(expected, event, c.key) != "0";
      op.choose(c.item);
      EXPECT_EQ(op.row(6), centred(c.title));
      EXPECT_EQ(arrow_path(op, 9), odd ? c.odd_arrow : c.even_arrow);
      op.choose("1");
      EXPECT_EQ(op.row(9), "  --> 1 - " + c.title + (was_on ? ":     [No]" : ":     [Yes]"));
      expected = with_value(expected, event, c.key, was_on ? "0" : "1");
      if (op.shows("2 - Delay:")) {
        op.choose("2");
        EXPECT_EQ(op.row(10), centred("Delay"));
        EXPECT_EQ(op.row(17), "New value [0-9999]");
        const std::string delay = odd ? "9999" : "900" + c.item;
        op.type(delay + "\r");
        expected = with_value(expected, event, c.key + "Delay", delay);
      }
      op.leave();
    }
    op.leave();
  }
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.read(file), expected);
}

// The first heading goes by the number of the group, as if that were the number of an event.
TEST(GroupJobs, AreHeadedByTheNumberOfTheGroup) {
  const Folder folder;
  folder.write("group_09.ini", demo(file));
  Operator op(folder);
  op.open("2/17/5/10/8/1/2");
  EXPECT_EQ(op.row(5), centred("UPS overload ended"));
  EXPECT_EQ(op.row(6), centred("Write to the event log"));
}

// Line 3 goes on into line 4: out of the editor, or to the program file.
TEST(GroupJobs, GoFromLineThreeToWhatFollowsIt) {
  struct Case {
    const char* path;      // from the list of events
    std::string typed[2];  // one entry after the other; no second one where the editor closes
    bool stays;
    const char* section;
    const char* keys[2];
    const char* values[2];
  };
  const Case cases[] = {
      {"1/4/3", {"31"}, false, "Event_00", {"LocalMessageInterval"}, {"31"}},
      {"1/5/3", {"32"}, false, "Event_00", {"NetMessageInterval"}, {"32"}},
      {"1/3/3", {"33", "a"}, true, "Event_00", {"ExecuteInterval", "File"}, {"33", "\"a\""}},
      {"2/3/4", {"c", "d"}, true, "Event_01", {"File"}, {"\"d\""}},
      {"3/3/4", {"b"}, true, "Event_02", {"File"}, {"\"b\""}},
  };
  const Folder folder;
  std::string expected = folder.read(file);
  Operator op(folder);
  op.open("2/17/5/1/8");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    op.open(c.path);
    op.type(c.typed[0] + "\r");
    if (!c.typed[1].empty()) {
      EXPECT_EQ(op.row(10), centred("Execute a program"));
      EXPECT_TRUE(op.canonical());
      op.type(c.typed[1] + "\r");
    }
    EXPECT_EQ(op.row(6) == centred("Execute a program"), c.stays);
    for (int i = 0; i < 2 && c.keys[i] != nullptr; ++i) {
      expected = with_value(expected, c.section, c.keys[i], c.values[i]);
    }
    while (!op.shows(centred("Group events"))) op.leave();
  }
  op.open("1/4/2");
  op.type("10000\r");
  op.expect("The value is out of range");
  op.expect("2 - Delay:     0");
  op.choose("3");
  op.type("10000\r");
  op.expect("10 - Message");  // a refused interval closes the editor as well
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.read(file), expected);
}

}  // namespace
