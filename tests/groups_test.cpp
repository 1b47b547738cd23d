#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "tests/operator.h"
#include "tests/tables.h"

namespace {

constexpr const char* file = "group_00.ini";
const std::string group = "2/17/5/1";

TEST(Group, IsDeletedWithItsNameAndWipedWhenOpenedAgain) {
  const Folder folder;
  const auto run = [&](const std::string& path, const char* typed) {
    Operator op(folder);
    op.open(group + path);
    op.type(typed);
    EXPECT_EQ(op.quit("y"), 1);
  };
  const std::string before = folder.read(file);
  run("/1/2", "Back\r");  // before the screen is left only this is lost
  EXPECT_EQ(folder.read(file), with_value(with_value(before, "Common", "Name", "\"Back\""),
                                          "Common", "AllowedUPSReboot", "0"));
  run("/1/0/1/2", "New\r");
  const std::string text = folder.read(file);
  EXPECT_EQ(text.substr(text.find("[Common]")),
            "[Common]\nName=\"New\"\nAllowedBatteryShutdown=0\nAllowedSystemShutdown=0\n"
            "AllowedUPSShutdown=0\nAllowedUPSReboot=1\nBatteryRuntimeShutdown=0\n"
            "SystemShutdownDelay=0\nUPSShutdownDelay=0\nRedundancyLevel=0\n\n[UPS]\n\n");
  run("/1", "");
  EXPECT_FALSE(folder.has(file));
}

TEST(GroupMembers, AreChosenFromTheUpses) {
  const Folder folder(demo_with("group_00.ini:UPS.UPS_00=17"));
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

TEST(GroupEvents, HaveNoWayBackFromTheirLastPage) {
  const Folder folder;
  Operator op(folder);
  op.open(group + "/8/65/65/65/65/65/65/65/64");
  EXPECT_EQ(op.row(17), "      10 - Message:     Event 63");
  op.leave();
  EXPECT_EQ(op.row(15), "  --> 64 - ...");  // no condition yet
  op.leave();
  EXPECT_EQ(op.row(17), "   --> 8 - Group events");
}

TEST(GroupEvents, BeginWithTheirDefaults) {
  const Folder folder;
  Operator op(folder);
  op.open(group + "/8/3/11");  // leaves the event
  EXPECT_EQ(op.row(10), "  -->  3 - ...");
  op.choose("3");
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

constexpr const char* execute =
    "****                      Execute a program                       ****";

// The first heading goes by the number of the group, as if that were the number of an event.
TEST(GroupJobs, AreHeadedByTheNumberOfTheGroup) {
  const Folder folder;
  folder.write("group_09.ini", demo(file));
  Operator op(folder);
  op.open("2/17/5/10/8/1/3");
  EXPECT_EQ(op.row(5), "****                      UPS overload ended                      ****");
  EXPECT_EQ(op.row(6), execute);
}

// Line 3 goes on into line 4: out of the editor, or to the program file.
TEST(GroupJobs, GoFromLineThreeToWhatFollowsIt) {
  const Folder folder;
  Operator op(folder);
  op.open(group + "/8/1/3/3");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(op.row(10),
              i == 0 ? "****                       Repeat interval                        ****"
                     : execute);
    EXPECT_TRUE(op.canonical());
    op.type("33\r");
  }
  EXPECT_EQ(op.row(6), execute);
  op.open("0/5/3");
  op.type("32\r");
  EXPECT_EQ(op.row(12), "  -->  5 - Network message:     [Yes]");
  op.open("4/2");
  op.type("10000\r");
  op.expect("2 - Delay:     0");
  op.choose("3");
  op.type("10000\r");
  op.expect("10 - Message");  // a refused interval closes the editor as well
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
