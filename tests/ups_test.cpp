#include <gtest/gtest.h>

#include <algorithm>

#include "tests/operator.h"
#include "tests/tables.h"
#include "ups/type_code.h"

namespace {

constexpr const char* file = "kestrel.ini";

TEST(TypeCode, TellsTheProductLineAndTheSpeed) {
  for (const Line& line : read_table("type_codes.txt")) {
    SCOPED_TRACE(line[0]);
    const bool known = line[1] != "255";
    EXPECT_EQ(FindUpsModelTxt(line[0].c_str()), known ? &FindModel : nullptr);
    EXPECT_EQ(FindModel.text, known ? line[0] : "Unknow model");
    EXPECT_EQ(std::to_string(FindModel.number), line[1]);
    EXPECT_EQ(std::to_string(FindModel.flag), line[2]);
    EXPECT_EQ(std::to_string(FindModel.baud), line[3]);
  }
}

TEST(Ups, AsksForATypeCodeUntilItIsKnown) {
  const Folder folder(demo_with("UPS_00.Type=\"TARVO\""));
  Operator op(folder);
  op.open("2/1/2");
  EXPECT_EQ(op.row(14), "      UPS type code:    Unknown model");
  for (const char* typed : {"\r", "LUMEN33T3000\r"}) {  // Enter alone does not help
    op.type(typed);
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

TEST(UpsName, FillsAFreeSlotWithDefaults) {
  const Folder folder;
  Operator op(folder);
  op.open("2/4/1");
  EXPECT_EQ(op.row(16), "  Press Enter alone to keep the name.");
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
  Folder::Files files =
      demo_with("UPS_03.Name=\"Annex\"; UPS_04.Name=\"Attic\"; group_00.ini:UPS.UPS_01=5");
  files["group_01.ini"] = files["group_02.ini"] = files["group_00.ini"];
  // A group without a name counts for nothing.
  put_values(files,
             "group_01.ini:UPS.UPS_00=4; group_02.ini:UPS.UPS_00=3;"
             "group_02.ini:Common.Name=\"\"");
  const Folder folder(files);
  Operator op(folder);
  op.open("2/1/1");
  op.type("*\r");  // slot 0 is a member
  EXPECT_EQ(op.row(21), "This UPS is a member of a group; remove it there first");
  op.choose("1");
  op.type("\r");
  EXPECT_EQ(op.row(7), "  --> 1 - UPS name:     Rack A left");
  op.open("0/3/1");
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
