#include <gtest/gtest.h>

#include <algorithm>

#include "tests/arrow_path.h"

namespace {

TEST(Messages, MovesTheArrowOverEveryScreen) {
  struct Walk {
    const char* screen;
    const char* modem;  // whether it is allowed
    const char* gsm_modem;
    int first_row;
    const char* path;
  };
  const Walk cases[] = {
      {"3", "1", "1", 10, "1 3 4 5 7 5 4 3 1"},
      {"3/1", "1", "1", 8, "1 2 3 4 5 6 7 8 9 10 12 10 9 8 7 6 5 4 3 2 1"},
      {"3/2", "1", "0", 8, "1 2 3 4 5 6 7 9 7 6 5 4 3 2 1"},
      {"3/2", "0", "1", 8, "1 9 1"},
      {"3/3", "1", "1", 8, "1 2 3 4 6 4 3 2 1"},
      {"3/3", "1", "0", 8, "1 6 4 3 2 1"},
      {"3/3", "0", "1", 8, "1 2 3 4 6 1"},
      {"3/3", "0", "0", 8, "1 6 1"},
      {"3/4", "1", "1", 10, "1 3 1"},
  };
  for (const Walk& c : cases) {
    SCOPED_TRACE(std::string(c.screen) + " " + c.modem + c.gsm_modem);
    const Folder folder;
    folder.set("kestrel.ini", "ModemConfig", "Allowed", c.modem);
    folder.set("kestrel.ini", "SMSConfig", "Allowed", c.gsm_modem);
    Operator op(folder);
    op.open(c.screen);
    EXPECT_EQ(arrow_path(op, c.first_row), c.path);
  }
}

const std::string digits = "12345678901234567890123456789012";

std::string first(std::size_t count) { return '"' + digits.substr(0, count) + '"'; }

TEST(Messages, SavesEveryField) {
  struct Edit {
    const char* path;
    std::string typed;
    const char* section;
    const char* key;
    std::string saved;
  };
  const Edit edits[] = {
      {"3/1/1", "Sam\r+4420\r", "SMS_00", "Name", "\"Sam\""},
      {"3/1/1", "\r+4421\r", "SMS_00", "TelNumber", "\"+4421\""},
      {"3/1/2", digits + "\r\r", "SMS_01", "Name", first(30)},
      {"3/1/2", "\r" + digits + "\r", "SMS_01", "TelNumber", first(30)},
      {"3/1/10", "Last\r7\r", "SMS_03", "TelNumber", "\"7\""},
      {"3/2/2", digits + "\r", "ModemConfig", "Port", first(22)},
      {"3/2/3", digits + "\r", "ModemConfig", "Number1", first(24)},
      {"3/2/4", digits + "\r", "ModemConfig", "Number2", first(24)},
      {"3/2/5", "99\r", "ModemConfig", "Repeat", "99"},
      {"3/2/5", "100\r", "ModemConfig", "Repeat", "99"},
      {"3/2/6", "0\r", "ModemConfig", "Delay", "0"},
      {"3/2/6", "100\r", "ModemConfig", "Delay", "0"},
      {"3/2/7", "", "ModemConfig", "IncommingAllowed", "1"},
      {"3/2/1", "", "ModemConfig", "Allowed", "0"},
      {"3/3/2", digits + "\r", "SMSConfig", "Port", first(22)},
      {"3/3/3", digits + "\r", "SMSConfig", "SMSCentre", first(24)},
      {"3/3/4", "", "SMSConfig", "Type", "0"},
      {"3/3/1", "", "SMSConfig", "Allowed", "0"},
      {"3/4/1", "", "WapConfig", "Allowed", "1"},
  };
  const Folder folder;
  // What is switched off below counts as on, whatever its value.
  folder.set("kestrel.ini", "ModemConfig", "Allowed", "7");
  folder.set("kestrel.ini", "SMSConfig", "Type", "255");
  Operator op(folder);
  for (const Edit& e : edits) {
    const std::string path = e.path;
    op.open(path);
    op.type(e.typed);
    for (auto level = std::count(path.begin(), path.end(), '/'); level > 0; --level) op.leave();
  }
  EXPECT_EQ(op.quit("y"), 1);
  for (const Edit& e : edits) {
    EXPECT_EQ(folder.value("kestrel.ini", e.section, e.key), e.saved) << e.path << " " << e.key;
  }
}

TEST(Messages, DimsTheSettingsOfAModemThatIsOff) {
  const Folder folder;
  folder.set("kestrel.ini", "ModemConfig", "Allowed", "0");
  folder.set("kestrel.ini", "SMSConfig", "Allowed", "0");
  Operator op(folder);
  op.open("3/2");
  EXPECT_EQ(op.look(8, "N]"), red);
  EXPECT_EQ(op.row(10), "      3 - [1] First telephone number:");
  EXPECT_EQ(op.row(14), "      7 - Accept incoming calls:");
  for (int row = 9; row <= 14; ++row) EXPECT_EQ(op.look(row, " - "), dim_white);
  op.enter();
  EXPECT_EQ(op.look(8, "Y]"), green);
  EXPECT_EQ(op.row(10), "      3 - [1] First telephone number:     +12025550123");
  EXPECT_EQ(op.look(10, "+12025550123"), cyan);
  EXPECT_EQ(op.row(14), "      7 - Accept incoming calls:     [N]");
  op.leave();

  op.choose("3");
  for (int row = 9; row <= 11; ++row) EXPECT_EQ(op.look(row, " - "), dim_white);
  EXPECT_EQ(op.row(11), "      4 - Modem type:");
  op.enter();
  op.choose("4");
  EXPECT_EQ(op.row(11), "  --> 4 - Modem type:     [0 - Siemens]");
}

TEST(Recipients, AreDeletedByAnAsterisk) {
  const Folder folder;
  // The longest texts that a file can hold stay on their line.
  const std::string name(32, 'n');
  folder.set("kestrel.ini", "SMS_01", "Name", '"' + name + '"');
  folder.set("kestrel.ini", "SMS_01", "TelNumber", '"' + digits + '"');
  Operator op(folder);
  op.open("3/1");
  const std::string shown = "       2 - Name:  " + name + "Phone:  ";
  EXPECT_EQ(op.row(9), shown + digits.substr(0, 79 - shown.size()));
  EXPECT_EQ(op.row(10), "       3 - Name:  Night porter        Phone:  +447700900789");
  op.enter();
  op.expect(
      "  Press Enter alone to keep the name.\n  Type * as the name to delete this recipient.");
  op.type("*Robin\r");  // asks for no number
  EXPECT_EQ(op.row(8), "  -->  1 - ...");

  op.choose("4");
  op.type("\r+4420\r");  // asks for a number, but without a name the slot stays free
  EXPECT_EQ(op.row(11), "  -->  4 - ...");

  op.choose("1");
  op.type("Kim\r");
  op.expect("+447700900123");  // which the slot still holds
  op.type("\r");
  op.choose("3");
  op.type("*\r");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value("kestrel.ini", "SMS_00", "Name"), "\"Kim\"");
  EXPECT_EQ(folder.value("kestrel.ini", "SMS_01", "Name"), '"' + name + '"');
  EXPECT_EQ(folder.read("kestrel.ini").find("[SMS_02]"), std::string::npos);
}

}  // namespace
