#include <gtest/gtest.h>

#include "tests/arrow_path.h"
#include "tests/edits.h"
#include "tests/operator.h"
#include "ups/type_code.h"

namespace {

constexpr const char* file = "kestrel.ini";

TEST(TypeCode, TellsTheProductLineAndTheSpeed) {
  struct Case {
    std::string code;
    int number;  // 255: unknown
    int flag;
    int baud;
  };
  const Case cases[] = {
      {"TARVO52R1500", 14, 1, 2400},
      {"TARVO 1xxxxxx", 14, 1, 1200},
      {"LUMEN39xxxxx", 30, 0, 9600},
      {"LUMEN24T2200", 21, 0, 4800},
      {"LUMEN3" + ("2" + std::string(43, 'x')), 30, 0, 2400},  // all 50 characters are kept
      {"TARVO52R150", 255, 0, 2400},                           // too short
      {"tarvo52R1500", 255, 0, 2400},
      {"LUMEN33T3000", 255, 0, 2400},  // no such speed
      {"OTHER52R1500", 255, 0, 2400},
      {"", 255, 0, 2400},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.code);
    EXPECT_EQ(FindUpsModelTxt(c.code.c_str()), c.number == 255 ? nullptr : &FindModel);
    EXPECT_EQ(FindModel.text, c.number == 255 ? "Unknow model" : c.code);
    EXPECT_EQ(FindModel.number, c.number);
    EXPECT_EQ(FindModel.flag, c.flag);
    EXPECT_EQ(FindModel.baud, c.baud);
  }
}

// --- The list -----------------------------------------------------------------------------------

TEST(UpsList, OffersParallelFunctionsToSeveralUpses) {
  const char* slots = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16";
  const char* back = "16 15 14 13 12 11 10 9 8 7 6 5 4 3 2 1";
  for (const int used : {0, 1, 2, 3}) {
    SCOPED_TRACE(used);
    const Folder folder;
    for (int i = used; i < 3; ++i) folder.set(file, "UPS_0" + std::to_string(i), "Name", "\"\"");
    Operator op(folder);
    op.choose("2");
    EXPECT_EQ(op.row(2), "****                         UPS devices                          ****");
    EXPECT_EQ(op.row(6), used == 3 ? "       3 - Machine hall     LUMEN24T2200       TCP/IP - "
                                     "198.51.100.7 - 5566"
                                   : "       3 - ...");
    EXPECT_EQ(op.row(19), "      16 - ...");
    EXPECT_EQ(op.row(21), "      17 - Parallel functions");
    EXPECT_EQ(op.row(23), "       0 - Leave this menu");
    EXPECT_EQ(op.row(24), std::string(70, '*'));
    EXPECT_EQ(op.look("Parallel"), used < 2 ? dim_white : white);
    std::string path = slots;
    path.append(used < 2 ? " 20 " : " 18 20 18 ").append(back);
    EXPECT_EQ(arrow_path(op, 4), path);
    if (used < 2) continue;
    op.choose("17");
    EXPECT_TRUE(op.shows(" Parallel functions ")) << op.screen();
    op.leave();
    EXPECT_EQ(op.row(21), "  --> 17 - Parallel functions");
  }
}

TEST(UpsList, CutsWhatIsTooLongForItsLine) {
  const Folder folder;
  folder.set(file, "UPS_00", "Name", "\"A name of 20 charact\"");
  folder.set(file, "UPS_00", "Type", "\"TARVO52R150012345678\"");
  folder.set(file, "UPS_00", "Port", "\"agent.ups.example.org\"");
  folder.set(file, "UPS_00", "Connection", "5");
  Operator op(folder);
  op.choose("2");
  EXPECT_EQ(op.row(4),
            "  -->  1 - A name of 20 charact TARVO52R150012345678 SNMP(1628) - agent.ups.exa");
  EXPECT_EQ(op.row(5), "       2 - Rack A right     LUMEN39T3000       SNMP - 192.0.2.21 - 161");
}

// --- The link -----------------------------------------------------------------------------------

TEST(UpsLink, ShowsWhatItsKindUses) {
  struct Case {
    const char* kind;
    const char* password;
    const char* summary;  // in the list
    const char* name;     // on the screen
    const char* values;   // of items 1.2 to 2.3.1; "-" where the label is dimmed
    const char* path;
  };
  const Case cases[] = {
      {"0", "5", "Serial - ttyS7 - 07", "Serial", "ttyS7|07|-|-|-|-|", "1 3 4 11 4 3 1"},
      {"2", "5", "SNMP - 1.2.3.4 - 99", "SNMP", "-|-|1.2.3.4|99|-|-|", "1 6 7 11 7 6 1"},
      {"3", "0", "TCP/IP - 1.2.3.4 - 99", "TCP/IP", "-|-|1.2.3.4|99|[No]|-|", "1 6 7 8 11 8 7 6 1"},
      {"3", "5", "TCP/IP - 1.2.3.4 - 99", "TCP/IP", "-|-|1.2.3.4|99|[Yes]||",
       "1 6 7 8 9 11 9 8 7 6 1"},
      {"5", "5", "SNMP(1628) - ttyS7 - 99", "SNMP - RFC1628", "-|-|ttyS7|99|-|-|",
       "1 6 7 11 7 6 1"},
      {"1", "5", "Unknown connection", "Unknown connection", "-|-|-|-|-|-|", "1"},
      {"4", "5", "Unknown connection", "Unknown connection", "-|-|-|-|-|-|", "1"},
  };
  const std::pair<int, std::string> labels[] = {
      {10, "          1.2 - Serial port:"},
      {11, "          1.3 - Device address:"},
      {13, "          2.1 - Network address:"},
      {14, "          2.2 - Network port:"},
      {15, "          2.3 - Password protection:"},
      {16, "              2.3.1 - Enter a new password"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.kind);
    const Folder folder;
    for (const auto& [key, value] : {std::pair{"Connection", c.kind},
                                     {"Password", c.password},
                                     {"Port", "\"ttyS7\""},
                                     {"Address", "7"},
                                     {"IPAddress", "\"1.2.3.4\""},
                                     {"Device", "99"}}) {
      folder.set(file, "UPS_00", key, value);
    }
    Operator op(folder);
    op.choose("2");
    EXPECT_EQ(op.row(4),
              std::string("  -->  1 - Rack A left      TARVO52R1500       ") + c.summary);
    op.open("1/4");
    EXPECT_EQ(op.row(8), "  --> 1 - Connection:     [" + std::string(c.name) + "]");
    std::string values;
    for (const auto& [row, label] : labels) {
      const std::string text = op.row(row);
      EXPECT_TRUE(text.starts_with(label)) << text;
      if (op.look(row, label) == dim_white) values += "-";
      if (text.size() > label.size()) values += text.substr(label.size() + 5);
      values += "|";
    }
    EXPECT_EQ(values, c.values);
    EXPECT_EQ(op.look("0 - Leave"), white);
    EXPECT_EQ(arrow_path(op, 8), c.path);
  }
}

TEST(UpsLink, GoesRoundItsFourKinds) {
  const Folder folder;
  Operator op(folder);
  op.open("2/1/4");
  for (const char* name : {"TCP/IP", "SNMP", "SNMP - RFC1628", "Serial"}) {
    op.choose("1");
    EXPECT_EQ(op.row(8), std::string("  --> 1 - Connection:     [") + name + "]");
  }
  EXPECT_EQ(op.quit(), 0);

  folder.set(file, "UPS_00", "Connection", "4");  // none of them: Enter does not help either
  Operator stuck(folder);
  stuck.open("2/1/4/1");
  EXPECT_EQ(stuck.row(8), "  --> 1 - Connection:     [Unknown connection]");
}

TEST(UpsLink, ListsAnRfc1628LinkAsItWasSaved) {
  const Folder folder;
  folder.set(file, "UPS_01", "Connection", "5");
  Operator op(folder);
  op.open("2/2/4/2.1");
  op.type("192.0.2.99\r");
  op.choose("2.2");
  op.type("1161\r");
  EXPECT_EQ(op.row(13), "          2.1 - Network address:     192.0.2.99");
  op.leave();
  op.leave();
  EXPECT_EQ(op.row(5),
            "  -->  2 - Rack A right     LUMEN39T3000       SNMP(1628) - /dev/ttyS0 - 161");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value(file, "UPS_01", "Port"), "\"192.0.2.99\"");
  EXPECT_EQ(folder.value(file, "UPS_01", "IPAddress"), "\"127.0.0.1\"");
}

// --- Every field --------------------------------------------------------------------------------

std::string some(std::size_t count) { return '"' + std::string(count, 'x') + '"'; }

TEST(UpsFields, AreSaved) {
  const std::string many(40, 'x');
  const Edit edits[] = {
      {"2/1/1", "A name of 25 characters..\r", "UPS_00", "Name", "\"A name of 25 charact\""},
      {"2/2/1", "19 bytes and then \xc3\xa4\xc3\xa4\r", "UPS_01", "Name",
       "\"19 bytes and then \xc3\xa4\""},
      {"2/3/1", "a character too lon\xc3\xa4\r", "UPS_02", "Name", "\"a character too lon\""},
      {"2/1/2", "LUMEN39" + many + "\r", "UPS_00", "Type", "\"LUMEN39xxxxxxxxxxx\""},
      {"2/1/3", many + "\r", "UPS_00", "Serial", some(18)},
      {"2/1/4/1.2", many + "\r", "UPS_00", "Port", some(22)},
      {"2/1/5.1", "0\r", "UPS_00", "SystemShutdownDelay", "65535"},
      {"2/1/5.1", "65535\r", "UPS_00", "SystemShutdownDelay", "65535"},
      {"2/3/6.1", "0\r", "UPS_02", "SystemShutdownLead", "65535"},
      {"2/3/6.1", "65535\r", "UPS_02", "SystemShutdownLead", "65535"},
      {"2/2/7.1", "65535\r", "UPS_01", "UPSShutdownDelay", "0"},
      {"2/2/7.1", "0\r", "UPS_01", "UPSShutdownDelay", "0"},
      {"2/2/7", "", "UPS_01", "UPSShutdown", "0"},
      {"2/3/7", "", "UPS_02", "UPSShutdown", "1"},
      {"2/2/4/2.1", many + "\r", "UPS_01", "IPAddress", some(18)},
      {"2/2/4/2.2", "65535\r", "UPS_01", "Device", "1"},
      {"2/2/4/2.2", "1\r", "UPS_01", "Device", "1"},
      {"2/1/4/1.3", "255\r", "UPS_00", "Address", "0"},
      {"2/1/4/1.3", "0\r", "UPS_00", "Address", "0"},
      {"2/3/4/2.3", "", "UPS_02", "Password", "0"},
      {"2/1/4/1", "", "UPS_00", "Connection", "3"},
  };
  const Folder folder;
  folder.set(file, "UPS_01", "UPSShutdown", "7");  // anything but 0 is on
  expect_saved(folder, edits);
}

TEST(UpsFields, RefuseNumbersOutOfRange) {
  const Edit edits[] = {
      {"2/1/5.1", "65536\r", "UPS_00", "SystemShutdownDelay", "10"},
      {"2/1/6.1", "-1\r", "UPS_00", "SystemShutdownLead", "5"},
      {"2/1/7.1", "65536\r", "UPS_00", "UPSShutdownDelay", "120"},
      {"2/1/4/1.3", "256\r", "UPS_00", "Address", "7"},
      {"2/1/1", "Changed\r", "UPS_00", "Name", "\"Changed\""},  // something to save
      {"2/2/4/2.2", "0\r", "UPS_01", "Device", "161"},
      {"2/2/4/2.2", "65536\r", "UPS_01", "Device", "161"},
  };
  const Folder folder;
  folder.set(file, "UPS_00", "Address", "7");
  expect_saved(folder, edits);
}

TEST(UpsFields, AskForAnAddressWithoutLeadingZero) {
  const Folder folder;
  Operator op(folder);
  op.open("2/1/4/1.3");
  EXPECT_EQ(op.row(14), "      Device address:   0");
  EXPECT_EQ(op.row(17), "New value [0-255] :");
}

// --- One UPS ------------------------------------------------------------------------------------

TEST(Ups, ShowsRulesByAllTheirFlagsAndMovesByTheirOwn) {
  struct Case {
    const char* flags;  // system shutdown, delay rule, lead rule, UPS shutdown
    const char* path;
    const char* shown;  // whether items 5, 6 and 7 show as on
  };
  const Case cases[] = {
      {"1111", "1 2 3 4 6 7 9 10 12 13 15 13 12 10 9 7 6 4 3 2 1", "111"},
      {"0000", "1 2 3 4 6 9 12 15 12 9 6 4 3 2 1", "000"},
      {"1100", "1 2 3 4 6 7 9 12 15 12 9 7 6 4 3 2 1", "100"},
      {"1011", "1 2 3 4 6 9 10 12 13 15 13 12 10 9 6 4 3 2 1", "011"},
      {"0110", "1 2 3 4 6 7 9 10 12 15 12 10 9 7 6 4 3 2 1", "000"},
  };
  const char* keys[] = {"SystemShutdown", "SystemShutDelayAllow", "SystemShutLeadAllow",
                        "UPSShutdown"};
  const std::tuple<int, std::string, std::string, std::string> items[] = {
      {12,
       "      5 - System shutdown:     ", "          5.1 - Delay after power failure:", "     10"},
      {15, "      6 - System shutdown:     ",
       "          6.1 - Lead before the battery is empty [min]:", "     5"},
      {18, "      7 - UPS shutdown:     ", "          7.1 - UPS shutdown delay [s]:", "     120"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.flags);
    const Folder folder;
    for (int i = 0; i < 4; ++i) folder.set(file, "UPS_00", keys[i], std::string(1, c.flags[i]));
    folder.set(file, "UPS_00", "Type", "\"TARVO\"");
    Operator op(folder);
    op.open("2/1");
    EXPECT_EQ(op.row(7), "  --> 1 - UPS name:     Rack A left");
    EXPECT_EQ(op.row(8), "      2 - UPS type code:     Unknown model");
    EXPECT_EQ(op.row(9), "      3 - Serial number:     TV5-004217");
    EXPECT_EQ(op.row(10), "      4 - Connection");
    for (int i = 0; i < 3; ++i) {
      const bool on = c.shown[i] == '1';
      const auto& [row, rule, label, value] = items[i];
      EXPECT_EQ(op.row(row), rule + (on ? "[Enabled]" : "[Disabled]"));
      EXPECT_EQ(op.look(row, on ? "Enabled" : "Disabled"), on ? green : red);
      EXPECT_EQ(op.row(row + 1), on ? label + value : label);
      EXPECT_EQ(op.look(row + 1, label), on ? white : dim_white);
    }
    EXPECT_EQ(op.row(21), "      0 - Leave this menu");
    EXPECT_EQ(arrow_path(op, 7), c.path);
  }
}

TEST(Ups, KeepsSystemShutdownInStepWithItsRules) {
  struct Case {
    const char* item;
    const char* before;  // system shutdown, delay rule, lead rule
    const char* after;
  };
  const Case cases[] = {
      {"5", "110", "000"}, {"5", "111", "101"}, {"5", "000", "110"}, {"5", "010", "000"},
      {"6", "101", "000"}, {"6", "111", "110"}, {"6", "000", "101"}, {"6", "110", "111"},
  };
  const char* keys[] = {"SystemShutdown", "SystemShutDelayAllow", "SystemShutLeadAllow"};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.item) + " " + c.before);
    const Folder folder;
    for (int i = 0; i < 3; ++i) folder.set(file, "UPS_00", keys[i], std::string(1, c.before[i]));
    Operator op(folder);
    op.open("2/1");
    op.choose(c.item);
    EXPECT_EQ(op.quit("y"), 1);
    std::string after;
    for (const char* key : keys) after += folder.value(file, "UPS_00", key);
    EXPECT_EQ(after, c.after);
  }
}

TEST(Ups, CorrectsALeadThatIsTooShort) {
  struct Case {
    const char* item;
    int typed;
    int lead;  // the other settings before
    int delay;
    int lead_rule;
    int ups_shutdown;
    int result;  // the lead then
    bool told;
  };
  const Case cases[] = {
      {"6.1", 1, 5, 90, 1, 1, 1, true},             // still too short by 30 s, and left so
      {"6.1", 9, 15, 600, 1, 1, 10, true},          //
      {"6.1", 10, 15, 600, 1, 1, 10, false},        //
      {"6.1", 2000, 15, 60000, 1, 1, 2000, false},  // 120000 s do not fit 16 bits
      {"6.1", 1, 15, 600, 1, 0, 1, false},          // here the shutdown of the UPS decides,
      {"7.1", 600, 1, 5, 1, 1, 10, true},           // and here the rule of the lead
      {"7.1", 600, 1, 5, 0, 1, 1, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.item + (" " + std::to_string(c.typed)));
    const Folder folder;
    folder.set(file, "UPS_00", "SystemShutdownLead", std::to_string(c.lead));
    folder.set(file, "UPS_00", "UPSShutdownDelay", std::to_string(c.delay));
    folder.set(file, "UPS_00", "SystemShutLeadAllow", std::to_string(c.lead_rule));
    folder.set(file, "UPS_00", "UPSShutdown", std::to_string(c.ups_shutdown));
    Operator op(folder);
    op.open("2/1");
    op.choose(c.item);
    op.type(std::to_string(c.typed) + "\r");
    EXPECT_EQ(op.shows("The lead is too short"), c.told);
    EXPECT_EQ(op.bells(), c.told ? 1 : 0);
    EXPECT_EQ(op.quit("y"), 1);
    EXPECT_EQ(folder.value(file, "UPS_00", "SystemShutdownLead"), std::to_string(c.result));
  }
}

TEST(Ups, AsksForATypeCodeUntilItIsKnown) {
  const Folder folder;
  folder.set(file, "UPS_00", "Type", "\"TARVO\"");
  Operator op(folder);
  op.open("2/1/2");
  EXPECT_EQ(op.row(14), "      UPS type code:    Unknown model");
  for (const char* typed : {"", "LUMEN33T3000"}) {  // Enter alone does not help
    op.type(std::string(typed) + "\r");
    EXPECT_EQ(op.row(19), "Unknown model");
    while (op.row(19) == "Unknown model") continue;
    EXPECT_TRUE(op.canonical());
  }
  op.type("LUMEN39T3000\r");
  EXPECT_EQ(op.row(8), "  --> 2 - UPS type code:     LUMEN39T3000");
  op.choose("2");
  op.type("\r");
  EXPECT_EQ(op.row(8), "  --> 2 - UPS type code:     LUMEN39T3000");
}

// --- Names, new and deleted UPSs ----------------------------------------------------------------

TEST(UpsName, FillsAFreeSlotWithDefaults) {
  const Folder folder;
  Operator op(folder);
  op.open("2/4");
  EXPECT_EQ(op.row(7), "  --> 1 - UPS name:     ...");
  EXPECT_EQ(op.row(9), "      0 - Leave this menu");
  EXPECT_EQ(arrow_path(op, 7), "1 3 1");
  op.enter();
  EXPECT_EQ(op.row(16), "  Press Enter alone to keep the name.");
  EXPECT_EQ(op.row(17), "  Type * as the name to delete this UPS.");
  op.type("\r");
  EXPECT_EQ(op.row(7), "  --> 1 - UPS name:     ...");
  op.choose("1");
  op.type("*\r");  // nothing to delete, but the screen is left
  EXPECT_EQ(op.row(7), "  -->  4 - ...");
  op.open("4/1");
  op.type("Annex\r");
  EXPECT_EQ(op.row(7), "  --> 1 - UPS name:     Annex");
  EXPECT_EQ(op.row(8), "      2 - UPS type code:     Unknown model");
  EXPECT_EQ(op.quit("y"), 1);
  std::string section = folder.read(file);
  section = section.substr(section.find("[UPS_03]"));
  section = section.substr(0, section.find("\n\n"));
  std::replace(section.begin(), section.end(), '\n', ' ');
  EXPECT_EQ(
      section,
      "[UPS_03] Name=\"Annex\" Type=\"\" Serial=\"\" Connection=0 Port=\"/dev/ttyS0\" Address=0 "
      "IPAddress=\"127.0.0.1\" Device=1 Message=1 MessageDelay=0 MessageRate=60 MessageType=0 "
      "SystemShutdown=1 SystemShutDelayAllow=1 SystemShutLeadAllow=0 SystemShutdownDelay=5 "
      "SystemShutdownLead=5 UPSShutdown=0 UPSShutdownDelay=5 UPSReboot=1 Password=0 "
      "HaveSensor=0 RTGConnTime=0 RTGTimeout=0 SNMPGetComm=\"\" SNMPSetComm=\"\"");
}

TEST(UpsName, KeepsGroupsOnTheirUpsesWhenOneIsDeleted) {
  const Folder folder;
  folder.write(file, folder.read(file) + "[UPS_03]\nName=\"Annex\"\n[UPS_04]\nName=\"Attic\"\n");
  folder.set("group_00.ini", "UPS", "UPS_01", "5");
  const std::string group = folder.read("group_00.ini");
  folder.write("group_01.ini", with_value(group, "UPS", "UPS_00", "4"));
  // A group without a name counts for nothing.
  folder.write("group_02.ini",
               with_value(with_value(group, "Common", "Name", "\"\""), "UPS", "UPS_00", "3"));
  Operator op(folder);
  op.open("2/1/1");
  op.type("*\r");  // slot 0 is a member
  EXPECT_EQ(op.row(21), "This UPS is a member of a group; remove it there first");
  op.choose("1");
  op.type("\r");
  EXPECT_EQ(op.row(7), "  --> 1 - UPS name:     Rack A left");
  op.leave();
  op.open("3/1");
  op.type("*anything\r");
  EXPECT_EQ(op.row(6), "  -->  3 - ...");
  EXPECT_EQ(op.row(7), "       4 - Annex            Unknown model      Serial -  - 00");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value(file, "UPS_02", "Name"), "\"Annex\"");
  EXPECT_EQ(folder.value(file, "UPS_03", "Name"), "\"Attic\"");
  EXPECT_EQ(folder.value("group_00.ini", "UPS", "UPS_00"), "1");
  EXPECT_EQ(folder.value("group_00.ini", "UPS", "UPS_01"), "4");
  EXPECT_EQ(folder.value("group_01.ini", "UPS", "UPS_00"), "3");
}

}  // namespace
