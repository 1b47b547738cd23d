#include <gtest/gtest.h>

#include "tests/arrow_path.h"
#include "tests/operator.h"

namespace {

constexpr int first_item = 7;

TEST(SystemMenu, ShowsTheLoadedValues) {
  const Folder folder;
  Operator op(folder);
  op.choose("1");
  EXPECT_EQ(op.screen(), R"(
**********************************************************************
****                                                              ****
****                      System parameters                       ****
****                                                              ****
**********************************************************************
  --> 1 - System name:     Server room
      2 - Location:     Building 2, ground floor
      3 - Contact person:     Robin Hale, ext. 4120
----------------------------------------------------------------------
      4 - Language:     English
----------------------------------------------------------------------
      5 - Event log:     [Yes]
      6 - Data log:     [Yes]
          6.1 - Data log rate:     60
          6.2 - Data log lower bound:     1000
          6.3 - Data log upper bound:     5000
----------------------------------------------------------------------
      7 - Network parameters
----------------------------------------------------------------------
      0 - Leave this menu

**********************************************************************
)");
  EXPECT_EQ(op.look("Server room"), cyan);
  EXPECT_EQ(op.look(13, "Yes"), green);
  EXPECT_EQ(arrow_path(op, first_item), "1 2 3 5 7 8 9 10 11 13 15 13 11 10 9 8 7 5 3 2 1");
  op.choose("6");
  EXPECT_EQ(op.look(14, "No"), red);
  EXPECT_EQ(op.row(15), "          6.1 - Data log rate:");
  EXPECT_EQ(op.look(15, "6.1"), dim_white);
  op.point(first_item);
  EXPECT_EQ(arrow_path(op, first_item), "1 2 3 5 7 8 13 15 13 8 7 5 3 2 1");
}

TEST(SystemMenu, EditsOnTheValueScreen) {
  const Folder folder;
  Operator op(folder);
  op.open("1/6.1");
  EXPECT_EQ(op.screen(), R"(






**********************************************************************
****                                                              ****
****                        Data log rate                         ****
****                                                              ****
**********************************************************************
----------------------------------------------------------------------
      Data log rate:    60
----------------------------------------------------------------------

New value [1-1000]
)");
  EXPECT_EQ(op.look(14, "60"), cyan);
  EXPECT_EQ(op.look(17, "New"), white);
  EXPECT_TRUE(op.canonical());
  EXPECT_TRUE(op.echo());
  EXPECT_TRUE(op.cursor_visible());
  op.type("1001\r");
  EXPECT_EQ(op.row(19), "The value is out of range");
  EXPECT_EQ(op.bells(), 1);
  op.expect("Data log upper bound");  // behind the pause
  EXPECT_EQ(op.row(15), "  -->     6.1 - Data log rate:     60");
  EXPECT_FALSE(op.canonical());
}

TEST(SystemMenu, TakesWholeCharactersUpToTheFieldWidth) {
  struct TextCase {
    std::string typed;
    std::string stored;
    int bells;
  };
  const std::string o_umlaut = "\xc3\xb6";
  const TextCase cases[] = {
      {std::string(30, 'x'), std::string(30, 'x'), 0},
      {std::string(33, 'x'), std::string(30, 'x'), 3},
      {std::string(29, 'x') + o_umlaut, std::string(29, 'x'), 1},
      {"", "Server room", 0},
      {"\x1b"
       "abc",
       "Server room", 0},
      {" blanks stay ", " blanks stay ", 0},
  };
  for (const TextCase& c : cases) {
    SCOPED_TRACE(c.typed);
    const Folder folder;
    Operator op(folder);
    op.open("1/1");
    op.type(c.typed + "\r");
    op.choose("6");  // something to save in every case
    EXPECT_EQ(op.bells(), c.bells);
    op.leave();
    EXPECT_EQ(op.quit("y"), 1);
    EXPECT_EQ(folder.value("kestrel.ini", "System", "Name"), "\"" + c.stored + "\"");
  }
}

struct Bounds {
  const char* item;
  const char* min;
  const char* max;
  const char* typed;
  const char* min_after;
  const char* max_after;
};

class CrossedBounds : public testing::TestWithParam<Bounds> {};

TEST_P(CrossedBounds, GiveWayWhereTheyWereEdited) {
  const Bounds& c = GetParam();
  const Folder folder;
  folder.set("kestrel.ini", "System", "DataLogMin", c.min);
  folder.set("kestrel.ini", "System", "DataLogMax", c.max);
  Operator op(folder);
  op.open(std::string("1/") + c.item);
  op.type(std::string(c.typed) + "\r");
  op.expect("0 - Leave this menu");
  op.choose("5");  // something to save in every case
  op.leave();
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value("kestrel.ini", "System", "DataLogMin"), c.min_after);
  EXPECT_EQ(folder.value("kestrel.ini", "System", "DataLogMax"), c.max_after);
}

INSTANTIATE_TEST_SUITE_P(SystemMenu, CrossedBounds,
                         testing::Values(Bounds{"6.2", "20", "400", "500", "399", "400"},
                                         Bounds{"6.2", "20", "400", "399", "399", "400"},
                                         Bounds{"6.2", "20", "30000", "30000", "29999", "30000"},
                                         Bounds{"6.3", "20", "400", "10", "20", "21"},
                                         Bounds{"6.3", "20", "400", "21", "20", "21"},
                                         Bounds{"6.2", "0", "0", "", "0", "0"},  // never wrapped
                                         Bounds{"6.3", "65535", "65535", "", "65535", "65535"},
                                         Bounds{"6.2", "500", "400", "", "399",
                                                "400"}));  // after Enter alone too

TEST(Languages, AreListedUpToTheFirstGap) {
  const Folder folder;
  folder.write("lang_02.ini", "");
  folder.write("lang_04.ini", "Far away\n");
  std::string third = folder.read("lang_01.ini");
  folder.write("lang_02.ini", "Third\r\n" + third.substr(third.find('\n') + 1));
  for (int number = 3; number < 15; ++number) {
    if (number != 4)
      folder.remove("lang_" + std::string(number < 10 ? "0" : "") + std::to_string(number) +
                    ".ini");
  }
  Operator op(folder);
  op.open("1/4");
  EXPECT_EQ(op.screen(), R"(


**********************************************************************
****                                                              ****
****                    Language of the menus                     ****
****                                                              ****
**********************************************************************
  --> English
      Deutsch
      Third
----------------------------------------------------------------------
      Leave this menu

**********************************************************************
)");
  EXPECT_EQ(arrow_path(op, 9), "1 2 3 5 3 2 1");
  op.down(3);
  op.enter();
  EXPECT_EQ(op.row(11), "  --> 4 - Language:     English");  // left as it was
  op.enter();
  op.down();
  op.enter();
  EXPECT_EQ(op.row(11), "  --> 4 - Language:     Deutsch");
  op.leave();
  EXPECT_EQ(op.quit("y"), 1);
  Operator again(folder);
  again.expect("0 - ");
  EXPECT_EQ(again.screen().find("Leave this menu"), std::string::npos);
  EXPECT_EQ(again.quit(), 0);
}

TEST(Languages, ScrollWhereTheyAreMoreThanTheScreenHolds) {
  const Folder folder;
  for (int number = 0; number < 32; ++number) {
    const std::string digits = (number < 10 ? "0" : "") + std::to_string(number);
    if (number > 0) folder.write("lang_" + digits + ".ini", "Language " + digits + "\n");
  }
  Operator op(folder);
  op.open("1/4");
  EXPECT_EQ(op.row(4), "  --> English");
  EXPECT_EQ(op.row(24), std::string(70, '*'));
  op.down(31);
  EXPECT_EQ(op.row(op.arrow()), "  --> Language 31");
  op.down();
  EXPECT_EQ(op.row(op.arrow()), "  --> Leave this menu");
  op.up(20);
  EXPECT_EQ(op.row(op.arrow()), "  --> Language 12");
  op.enter();
  EXPECT_EQ(op.row(11), "  --> 4 - Language:     Language 12");
}

}  // namespace
