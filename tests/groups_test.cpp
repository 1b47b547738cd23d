#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <utility>

#include "tests/arrow_path.h"
#include "tests/operator.h"

namespace {

constexpr const char* file = "group_00.ini";
const std::string group = "2/17/5/1";
const std::string event = group + "/8/1";
const std::string condition = event + "/1/1";

constexpr const char* group_screen =
    R"(**********************************************************************
****                       Group parameters                       ****
**********************************************************************
   --> 1 - Delete this entry
       2 - Name     Rack A
       3 - Redundancy level:     [N+1]
----------------------------------------------------------------------
       4 - Shutdown by battery runtime:     [Enabled]
           4.1 - Battery runtime limit:     10
       5 - System shutdown:     [Enabled]
           5.1 - System shutdown delay:     300
       6 - UPS shutdown:     [Disabled]
           6.1 - UPS shutdown delay:
----------------------------------------------------------------------
       7 - Members of the group
----------------------------------------------------------------------
       8 - Group events
       9 - Load events from a profile file
      10 - Save events to a profile file
----------------------------------------------------------------------
       0 - Leave this menu
**********************************************************************
)";

TEST(Group, StoresWhatIsEdited) {
  const struct {
    const char* item;
    const char* typed;
    const char* key;
    const char* stored;
  } cases[] = {
      {"2", "Machine hall 2\r", "Name", "\"Machine hall 2\""},
      {"3", "", "RedundancyLevel", "2"},
      {"4.1", "65535\r", "BatteryRuntimeShutdown", "65535"},
      {"4", "", "AllowedBatteryShutdown", "0"},
      {"5.1", "65536\r", "SystemShutdownDelay", "300"},  // refused
      {"5", "", "AllowedSystemShutdown", "0"},
      {"6", "", "AllowedUPSShutdown", "1"},
      {"6.1", "0\r", "UPSShutdownDelay", "0"},
  };
  const Folder folder;
  Operator op(folder);
  op.open(group);
  EXPECT_EQ(op.screen(), group_screen);
  EXPECT_EQ(op.look(8, "Enabled"), green);
  EXPECT_EQ(op.look("Disabled"), red);
  EXPECT_EQ(op.look(9, "4.1"), white);
  EXPECT_EQ(op.look(13, "6.1"), dim_white);
  for (const auto& c : cases) {
    op.choose(c.item);
    op.type(c.typed);
  }
  EXPECT_EQ(op.quit("y"), 1);
  for (const auto& c : cases) EXPECT_EQ(folder.value(file, "Common", c.key), c.stored) << c.key;
}

TEST(Group, HasFourLevelsOfRedundancy) {
  const Folder folder;
  folder.set(file, "Common", "RedundancyLevel", "7");
  Operator op(folder);
  op.open(group);
  for (const char* level : {"N+7", "N", "N+1", "N+2", "N+3", "N"}) {
    op.point(6);
    EXPECT_EQ(op.row(6), std::string("   --> 3 - Redundancy level:     [") + level + "]");
    op.enter();
  }
}

TEST(Group, LeadsTheArrowPastWhatIsOff) {
  const std::pair<std::string, std::string> cases[] = {
      {"111", "1 2 3 5 6 7 8 9 10 12 14 15 16 18 16 15 14 12 10 9 8 7 6 5 3 2 1"},
      {"011", "1 2 3 5 7 8 9 10 12 14 15 16 18 16 15 14 12 10 9 8 7 5 3 2 1"},
      {"101", "1 2 3 5 6 7 9 10 12 14 15 16 18 16 15 14 12 10 9 7 6 5 3 2 1"},
      {"110", "1 2 3 5 6 7 8 9 12 14 15 16 18 16 15 14 12 9 8 7 6 5 3 2 1"},
  };
  for (const auto& [on, path] : cases) {
    const Folder folder;
    folder.set(file, "Common", "AllowedBatteryShutdown", on.substr(0, 1));
    folder.set(file, "Common", "AllowedSystemShutdown", on.substr(1, 1));
    folder.set(file, "Common", "AllowedUPSShutdown", on.substr(2, 1));
    Operator op(folder);
    op.open(group);
    EXPECT_EQ(arrow_path(op, 4), path);
  }
}

TEST(Group, IsDeletedWithItsNameAndWipedWhenOpenedAgain) {
  const Folder folder;
  Operator op(folder);
  op.open(group + "/1");
  for (const char* label : {"3 - Redundancy level:", "4 - Shutdown by battery runtime:",
                            "6.1 - UPS shutdown delay:", "10 - Save events to a profile file"}) {
    EXPECT_EQ(op.look(label), dim_white);
    EXPECT_FALSE(op.shows(std::string(label) + " "));  // no value
  }
  EXPECT_EQ(arrow_path(op, 4), "1 2 18 2 1");
  op.choose("2");
  op.type("Back\r");  // before the screen is left nothing else is lost
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value(file, "Common", "AllowedUPSReboot"), "0");
  EXPECT_EQ(folder.value(file, "Event_02", "Type2"), "1");

  Operator again(folder);
  again.open(group + "/1/0/1/2");
  again.type("New\r");
  EXPECT_EQ(again.quit("y"), 1);
  const std::string text = folder.read(file);
  EXPECT_EQ(text.substr(text.find("[Common]")),
            "[Common]\nName=\"New\"\nAllowedBatteryShutdown=0\nAllowedSystemShutdown=0\n"
            "AllowedUPSShutdown=0\nAllowedUPSReboot=1\nBatteryRuntimeShutdown=0\n"
            "SystemShutdownDelay=0\nUPSShutdownDelay=0\nRedundancyLevel=0\n\n[UPS]\n\n");

  Operator last(folder);
  last.open(group + "/1");
  EXPECT_EQ(last.quit("y"), 1);
  EXPECT_FALSE(folder.has(file));
}

TEST(GroupScreens, LeadTheArrowOverTheirLines) {
  const std::string slots = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 18 ";
  const struct {
    std::string path;
    int first_row;
    const char* first_line;
    std::string arrow;
  } cases[] = {
      {"2/17/5/10", 4, "   --> 1 - Delete this entry", "1 2 18 2 1"},
      {group + "/7", 8, "  --> 1 - Rack A left", "1 2 3 4 5 6 7 8 10 8 7 6 5 4 3 2 1"},
      {group + "/7/8", 4, "  -->  1 - Rack A left      TARVO52R1500       Serial - /dev/ttyS0 - 00",
       slots + "16 15 14 13 12 11 10 9 8 7 6 5 4 3 2 1"},
      {group + "/8", 8, "  -->  1 - Event - Rack A: both feeds have failed",
       "1 2 3 4 5 6 7 8 10 12 10 8 7 6 5 4 3 2 1"},
      {group + "/8/65/65/65/65/65/65/65", 8, "  --> 57 - ...",
       "1 2 3 4 5 6 7 8 12 8 7 6 5 4 3 2 1"},
      {event, 7, "  -->  1 - Conditions", "1 3 4 5 6 7 8 9 10 11 13 15 13 11 10 9 8 7 6 5 4 3 1"},
      {event + "/1", 8, "  --> 1 - Power failure - [255]", "1 2 3 4 5 6 8 6 5 4 3 2 1"},
      {condition, 8, "  --> 1 - Delete this entry", "1 2 3 5 3 2 1"},
      {condition + "/2", 7, "  -->  1 - Power failure",
       "1 2 3 4 5 6 7 8 9 10 11 13 15 13 11 10 9 8 7 6 5 4 3 2 1"},
      {condition + "/2/12", 7, "  --> 12 - UPS temperature normal again",
       "1 2 3 4 5 6 7 8 9 10 11 12 13 15 13 12 11 10 9 8 7 6 5 4 3 2 1"},
      {condition + "/3", 8, "  --> 1 - Member UPS", "1 2 3 4 3 2 1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.path);
    const Folder folder;
    Operator op(folder);
    op.open(c.path);
    EXPECT_EQ(op.row(c.first_row), c.first_line);
    EXPECT_EQ(arrow_path(op, c.first_row), c.arrow);
  }
}

TEST(GroupMembers, AreChosenFromTheUpses) {
  const Folder folder;
  folder.set(file, "UPS", "UPS_00", "17");
  Operator op(folder);
  op.open("2/2/1");
  op.type("Renamed\r");
  op.open("0/17/5/1/7");
  EXPECT_EQ(op.row(8), "  --> 1 -");  // there is no such UPS
  EXPECT_EQ(op.row(9), "      2 - Renamed");
  EXPECT_EQ(op.row(10), "      3 - ...");
  op.enter();
  op.open("1/8/3");  // the first of the list, and the third
  EXPECT_EQ(op.row(15), "  --> 8 - Machine hall");
  op.open("8/4");  // free: the member stays
  EXPECT_EQ(op.row(15), "  --> 8 - Machine hall");
  op.open("3/3/2/17");  // the same once more, and none
  EXPECT_EQ(op.row(9), "  --> 2 - ...");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_NE(folder.read(file).find("[UPS]\nUPS_00=1\nUPS_01=3\nUPS_02=3\n\n"), std::string::npos);
}

TEST(GroupEvents, AreListedEightToAPage) {
  const Folder folder;
  folder.set(file, "Event_01", "Message", '"' + std::string(118, 'm') + '"');
  Operator op(folder);
  op.open(group + "/8");
  EXPECT_EQ(op.row(9), "       2 - Event - " + std::string(60, 'm'));
  EXPECT_EQ(op.row(17), "      65 - Show more");
  op.open("65/65/65/65/65/65/65");
  EXPECT_EQ(op.look("65 - "), dim_white);
  op.choose("64");
  EXPECT_EQ(op.row(17), "      10 - Message:     Event 63");
  op.leave();
  EXPECT_EQ(op.row(15), "  --> 64 - ...");  // no condition yet
  op.leave();                               // there is no way back to the other pages
  EXPECT_EQ(op.row(17), "   --> 8 - Group events");
}

TEST(GroupEvents, BeginWithTheirDefaults) {
  const Folder folder;
  Operator op(folder);
  op.open(group + "/8/3/11");  // leaves the event
  EXPECT_EQ(op.row(10), "  -->  3 - ...");
  op.choose("3");
  EXPECT_EQ(op.row(9), "       2 - Write to the event log:     [Yes]");
  EXPECT_EQ(op.look(9, "Yes"), green);
  EXPECT_EQ(op.row(13), "       6 - Operating system shutdown:     [No]");
  EXPECT_EQ(op.look(13, "No"), red);
  op.choose("10");
  op.type("Lost\r");  // an event without a condition is new whenever it is opened
  op.open("0/3/1/1/2/1");
  EXPECT_EQ(op.quit("y"), 1);
  const std::pair<const char*, const char*> stored[] = {
      {"Type1", "1"}, {"Type2", "0"},    {"Priority1", "0"}, {"Message", "\"Event 02\""},
      {"Log", "1"},   {"Shutdown", "0"}, {"File", "\"\""},   {"CallDelay", "0"},
  };
  for (const auto& [key, text] : stored) EXPECT_EQ(folder.value(file, "Event_02", key), text);
}

TEST(GroupEvents, OpenTheirActions) {
  const char* const actions[] = {"Log",      "Execute", "LocalMessage", "NetMessage",
                                 "Shutdown", "Email",   "SMS",          "Call"};
  const Folder folder;
  Operator op(folder);
  op.open(event);
  int item = 1;
  for (const char* key : actions) {
    folder.set(file, "Event_00", key, folder.value(file, "Event_00", key) == "1" ? "0" : "1");
    op.open(std::to_string(++item) + "/1/0");
  }
  op.choose("10");
  op.type("Changed\r");
  folder.set(file, "Event_00", "Message", "\"Changed\"");
  const std::string expected = folder.read(file);
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.read(file), expected);
}

TEST(GroupConditions, HaveATypeAndASource) {
  const struct {
    std::string type, source;
    std::string line;         // in the list
    std::string source_text;  // in the editor
    std::string path;         // in the editor
    std::string question, typed;
    std::string new_type, new_source;
  } cases[] = {
      {"0", "5", "...", "Member UPS [5]", "3", "", "", "0", "5"},  // nothing happens
      {"1", "99", "Power failure - [99]", "Member UPS [99]", "3/1", "Number:   99", "0\r", "1",
       "0"},
      {"1", "100", "Power failure - [0]", "Number of UPSs [0]", "3/1", "Number:   100", "\r", "1",
       "100"},
      {"1", "101", "Power failure - [1]", "Number of UPSs [1]", "3/2", "Number:   1", "8\r", "1",
       "108"},
      {"7", "255", "Battery low - [255]", "All UPSs", "3/1", "Number:   155", "9\r", "7",
       "155"},  // refused
      {"7", "254", "Battery low - [254]", "Any UPS", "3/4", "", "", "7", "255"},
      {"21", "253", "Sensor alarm - [153]", "Number of UPSs [153]", "3/3", "", "", "21", "254"},
      {"22", "100", "Sensor alarm ended - [0]", "100", "3/2", "Number:   100", "\r", "22", "200"},
      {"23", "108", "Redundancy lost - [108]", "108", "3", "Redundancy level: 108", "8\r", "23",
       "8"},
      {"24", "3", "Redundancy restored - [3]", "3", "2/12/22", "", "", "22", "3"},
      {"26", "120", "Repeat interval - [20]", "120", "2/11", "", "", "11", "120"},
      {"2", "0", "Power restored - [0]", "Member UPS [0]", "2/0", "", "", "15", "0"},
      {"2", "0", "Power restored - [0]", "Member UPS [0]", "2/12/12", "", "", "12", "0"},
      {"2", "0", "Power restored - [0]", "Member UPS [0]", "2/12/0", "", "", "26", "0"},
  };
  const auto section = [](std::size_t i) { return "Event_0" + std::to_string(i / 5); };
  const auto number = [](std::size_t i) { return std::to_string(2 + i % 5); };  // never the first
  const Folder folder;
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    folder.set(file, section(i), "Type" + number(i), cases[i].type);
    folder.set(file, section(i), "Priority" + number(i), cases[i].source);
  }
  Operator op(folder);
  op.open(group + "/8");
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    const auto& c = cases[i];
    SCOPED_TRACE(i);
    op.open(std::to_string(i / 5 + 1) + "/1");
    EXPECT_TRUE(op.shows(" " + number(i) + " - " + c.line));
    op.choose(number(i));
    EXPECT_EQ(op.row(9), "      2 - Condition type:     " + c.line.substr(0, c.line.find(" - ")));
    EXPECT_EQ(op.row(10), "      3 - Source:     " + c.source_text);
    op.open(c.path);
    if (!c.typed.empty()) {
      EXPECT_EQ(op.row(14), "      " + c.question);
      op.type(c.typed);
    }
    op.expect("Condition type");
    EXPECT_EQ(op.arrow(), c.path[0] == '2' ? 9 : 10);
    op.open("0/0/0");
  }
  EXPECT_EQ(op.quit("y"), 1);
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(folder.value(file, section(i), "Type" + number(i)), cases[i].new_type) << i;
    EXPECT_EQ(folder.value(file, section(i), "Priority" + number(i)), cases[i].new_source) << i;
  }
}

TEST(GroupConditions, MoveUpWhenOneIsDeleted) {
  const std::pair<std::string, std::string> cases[] = {
      {"1", "234560345677"}, {"2", "134560245677"}, {"6", "123450234567"}};  // types and sources
  const Folder folder;
  const auto key = [](std::size_t n) {
    return (n < 6 ? "Type" : "Priority") + std::to_string(n % 6 + 1);
  };
  for (const char* section : {"Event_00", "Event_01", "Event_02"}) {
    for (std::size_t n = 0; n < 12; ++n) {
      folder.set(file, section, key(n), std::to_string(n % 6 + n / 6 + 1));
    }
  }
  Operator op(folder);
  op.open(group + "/8");
  for (int i = 0; i < 3; ++i) {
    op.open(std::to_string(i + 1) + "/1/" + cases[i].first + "/1");
    EXPECT_EQ(op.arrow(), 7 + std::stoi(cases[i].first));
    op.open("0/0");
  }
  EXPECT_EQ(op.quit("y"), 1);
  for (int i = 0; i < 3; ++i) {
    std::string all;
    for (std::size_t n = 0; n < 12; ++n) {
      all += folder.value(file, "Event_0" + std::to_string(i), key(n));
    }
    EXPECT_EQ(all, cases[i].second);
  }
}

TEST(GroupProfiles, CarryTheEventsToAnotherGroup) {
  const Folder folder;
  folder.set("kestrel.ini", "System", "DebugLog", "1");
  mkdir(folder.path("sub").c_str(), 0777);
  Operator op(folder);
  op.open(group + "/8/2/11/0/10");  // the second of three events is no more
  EXPECT_EQ(op.row(8), "Save events to a profile file :");
  EXPECT_TRUE(op.cursor_visible());
  op.type("sub/profile\r");
  EXPECT_EQ(op.row(19), "   -->10 - Save events to a profile file");
  op.open("0/2/2");
  op.type("Rack B\r");
  const std::pair<const char*, const char*> transfers[] = {
      {"9", "sub/profile\r"}, {"9", "sub/missing\r"}, {"10", "missing/profile\r"}, {"10", "\r"}};
  for (const auto& [item, name] : transfers) {
    op.choose(item);
    op.type(name);
    if (std::string(name).find("missing") != std::string::npos) {
      op.expect("The profile file cannot be opened");
    }
  }
  EXPECT_EQ(op.bells(), 2);
  EXPECT_EQ(op.quit("y"), 1);
  const auto events_of = [&](const char* name) {
    const std::string text = folder.read(name);
    return text.substr(text.find("[Event_00]"));
  };
  EXPECT_EQ(events_of("group_01.ini"), events_of("group_00.ini"));
  EXPECT_EQ(folder.value("group_01.ini", "Event_01", "Type1"), "7");
  EXPECT_EQ(folder.read("debugs.log"),
            "\nRecord not readed - maybe end of file ! \nCannot open file! \nCannot open file! ");
}

TEST(GroupProfiles, AreLoadedAsFarAsTheyGo) {
  std::string record(450, '\0');
  record.replace(0, 2, "\xD0\x07");  // type 2000 has no text
  record.replace(330, 120, 120, 'x');
  const Folder folder;
  folder.write("profile", record + record.substr(1));
  Operator op(folder);
  op.open(group + "/9");
  op.type("profile\r");
  op.choose("8");
  EXPECT_EQ(op.row(8), "  -->  1 - Event - " + std::string(60, 'x'));
  EXPECT_EQ(op.row(9), "       2 - ...");
  op.open("1/1");
  EXPECT_EQ(op.row(8), "  --> 1 -");
  op.enter();
  EXPECT_EQ(op.row(9), "      2 - Condition type:");
}

}  // namespace
