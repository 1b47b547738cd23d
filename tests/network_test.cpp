#include <gtest/gtest.h>

#include "config/password.h"
#include "tests/arrow_path.h"
#include "tests/edits.h"

namespace {

constexpr const char* network_screen = R"(

**********************************************************************
****                                                              ****
****                      Network parameters                      ****
****                                                              ****
**********************************************************************
  --> 1 - Check rate:     5
      2 - Act as network server:     [Yes]
      3 - Network port:     5566
      4 - Ignore remote UPS commands:     [Yes]
      5 - HTTP access:     [Yes]
      6 - HTTP path:     /usr/share/kestrel/www
      7 - Password protection:     [No]
          7.1 - Enter a new password
----------------------------------------------------------------------
      0 - Leave this menu

**********************************************************************
)";

TEST(Network, ShowsItsSettings) {
  const Folder folder;
  Operator op(folder);
  op.open("1/7");
  EXPECT_EQ(op.screen(), network_screen);
  EXPECT_EQ(op.look("5566"), cyan);
  EXPECT_EQ(op.look(9, "Yes"), green);
  EXPECT_EQ(op.look(14, "No"), red);
  EXPECT_EQ(op.look("Enter a new"), dim_white);
  EXPECT_EQ(arrow_path(op, 8), "1 2 3 4 5 6 7 10 7 6 5 4 3 2 1");
  op.choose("7");
  EXPECT_EQ(op.look("Enter a new"), white);
  op.point(8);
  EXPECT_EQ(arrow_path(op, 8), "1 2 3 4 5 6 7 8 10 8 7 6 5 4 3 2 1");
}

TEST(Network, SavesEveryField) {
  const std::string path(254, 'p');
  const Edit edits[] = {
      {"1/7/1", "1\r", "Network", "CheckRate", "255"},
      {"1/7/1", "255\r", "Network", "CheckRate", "255"},
      {"1/7/1", "0\r", "Network", "CheckRate", "255"},
      {"1/7/1", "256\r", "Network", "CheckRate", "255"},
      {"1/7/2", "", "Network", "Server", "0"},
      {"1/7/3", "65535\r", "Network", "Port", "1000"},
      {"1/7/3", "1000\r", "Network", "Port", "1000"},
      {"1/7/3", "999\r", "Network", "Port", "1000"},
      {"1/7/3", "65536\r", "Network", "Port", "1000"},
      {"1/7/4", "", "System", "IgnoreRemoteUPSCommands", "1"},
      {"1/7/5", "", "Network", "HTTP", "0"},
      {"1/7/6", path + "beyond\r", "Network", "HTTPPath", '"' + path + '"'},
      {"1/7/7", "", "System", "PasswordProtection", "1"},  // wanted, and not set yet
  };
  const Folder folder;
  folder.set("kestrel.ini", "Network", "Server", "7");  // anything but 0 is on
  folder.set("kestrel.ini", "System", "IgnoreRemoteUPSCommands", "0");
  expect_saved(folder, edits);
}

TEST(Passwords, AreSumsOfSignedBytes) {
  const std::pair<std::string, int> cases[] = {
      {"", 0}, {"AB", 131}, {"BA", 131}, {std::string(600, 'z'), 7664}, {"\xff", 65535}};
  for (const auto& [text, sum] : cases) EXPECT_EQ(CalculatePassword(text.c_str()), sum) << text;
}

TEST(Passwords, AreSetAndRemovedOnBothScreensThatHaveOne) {
  struct Place {
    const char* item;  // that says whether there is a password; the next one asks for it
    const char* section;
    const char* key;
    int longest;
  };
  struct Entry {
    std::string typed;
    int sum;
    bool steps_back;  // the arrow, to the item before
  };
  for (const Place& p : {Place{"1/7/7", "System", "PasswordProtection", 254},
                         Place{"2/1/4/2.3", "UPS_00", "Password", 118}}) {
    const Entry entries[] = {
        {"hawthorn", 875, false},
        {std::string(300, 'z'), p.longest * 'z', false},
        {"JJ\xc3\xa9", 0, false},  // the sum is 0, so this is no password, but the arrow stays
        {"", 0, true},
        {"\x1bhawthorn", 0, true},
    };
    for (const Entry& e : entries) {
      SCOPED_TRACE(p.key + (" " + readable(e.typed)));
      const Folder folder;
      folder.set("kestrel.ini", "UPS_00", "Connection", "3");
      Operator op(folder);
      op.open(p.item);
      const int item = op.arrow();
      op.down();
      op.enter();
      EXPECT_EQ(op.row(12),
                "****                     Enter a new password                     ****");
      EXPECT_TRUE(op.cursor_visible());
      op.type(e.typed + "\r");
      EXPECT_EQ(op.arrow(), e.steps_back ? item : item + 1);
      EXPECT_EQ(op.look("Enter a new"), e.sum == 0 ? dim_white : white);
      EXPECT_EQ(op.quit(e.sum == 0 ? "" : "y"), e.sum == 0 ? 0 : 1);
      EXPECT_EQ(folder.value("kestrel.ini", p.section, p.key), std::to_string(e.sum));
      for (const auto& [name, bytes] : folder.files()) {
        EXPECT_EQ(bytes.find("hawthorn"), std::string::npos) << name;
      }
    }
  }
}

}  // namespace
