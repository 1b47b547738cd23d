#include <gtest/gtest.h>

#include "config/password.h"
#include "tests/arrow_path.h"
#include "tests/tables.h"

namespace {

TEST(ValueScreen, TakesALineAndRefusesWhatIsOutOfRange) {
  const Folder folder;
  Operator op(folder);
  op.open("1/6.1");
  EXPECT_TRUE(op.canonical() && op.echo() && op.cursor_visible());
  op.type("1001\r");
  EXPECT_EQ(op.row(19), "The value is out of range");
  EXPECT_EQ(op.bells(), 1);
  op.expect("Data log upper bound");  // behind the pause
  EXPECT_EQ(op.row(15), "  -->     6.1 - Data log rate:     60");
  EXPECT_FALSE(op.canonical() || op.echo() || op.cursor_visible());
}

TEST(ValueScreen, TakesWholeCharactersUpToTheFieldWidth) {
  const std::string o_umlaut = "\xc3\xb6";
  const struct {
    std::string typed, shown;
    int bells;
  } cases[] = {
      {"", "Server room", 0},
      {"\x1b abc", "Server room", 0},
      {std::string(33, 'x'), std::string(30, 'x'), 3},
      {std::string(29, 'y') + o_umlaut, std::string(29, 'y'), 1},
      {std::string(30, 'z'), std::string(30, 'z'), 0},
      {" blanks stay ", " blanks stay", 0},
  };
  const Folder folder;
  Operator op(folder);
  op.choose("1");
  for (const auto& c : cases) {
    const int bells = op.bells();
    op.choose("1");
    op.type(c.typed + "\r");
    EXPECT_EQ(op.row(7), "  --> 1 - System name:     " + c.shown);
    EXPECT_EQ(op.bells() - bells, c.bells);
  }
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value("kestrel.ini", "System", "Name"), "\" blanks stay \"");
}

std::string language_file(int number) {
  return (number < 10 ? "lang_0" : "lang_") + std::to_string(number) + ".ini";
}

TEST(Languages, AreListedUpToTheFirstGap) {
  const Folder folder;
  const std::string german = folder.read("lang_01.ini");
  for (int number = 3; number < 15; ++number) folder.remove(language_file(number));
  folder.write("lang_02.ini", "Third\r\n" + german.substr(german.find('\n') + 1));
  folder.write("lang_04.ini", "Far away\n");
  Operator op(folder);
  op.open("1/4");
  EXPECT_EQ(op.row(6), "****                    Language of the menus                     ****");
  EXPECT_EQ(op.row(9), "  --> English");
  EXPECT_EQ(op.row(11), "      Third");
  EXPECT_EQ(op.row(12), std::string(70, '-'));
  EXPECT_EQ(op.row(13), "      Leave this menu");
  EXPECT_EQ(arrow_path(op, 9), "1 2 3 5 3 2 1");
  op.point(13);
  op.enter();
  EXPECT_EQ(op.row(11), "  --> 4 - Language:     English");  // left as it was
  op.enter();
  op.point(10);
  op.enter();
  EXPECT_EQ(op.row(11), "  --> 4 - Language:     Deutsch");
  EXPECT_EQ(op.quit("y"), 1);
  Operator again(folder);
  again.expect("0 - ");
  EXPECT_FALSE(again.shows("Leave this menu"));
  EXPECT_EQ(again.quit(), 0);
}

TEST(Languages, ScrollWhereTheyAreMoreThanTheScreenHolds) {
  const Folder folder;
  for (int number = 1; number < 32; ++number) {
    folder.write(language_file(number), "Language " + std::to_string(number) + "\n");
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

TEST(Passwords, AreSumsOfSignedBytes) {
  const std::pair<std::string, int> cases[] = {
      {"", 0}, {"AB", 131}, {"BA", 131}, {std::string(600, 'z'), 7664}, {"\xff", 65535}};
  for (const auto& [text, sum] : cases) EXPECT_EQ(CalculatePassword(text.c_str()), sum) << text;
}

TEST(Recipients, AreDeletedByAnAsterisk) {
  const Folder folder;
  Operator op(folder);
  op.open("3/1/1");
  op.expect("  Press Enter alone to keep the name.");
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
  op.choose("10");
  op.type("Last\r7\r");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.value("kestrel.ini", "SMS_00", "Name"), "\"Kim\"");
  EXPECT_EQ(folder.value("kestrel.ini", "SMS_02", "TelNumber"), "\"7\"");  // the list has no gaps
  EXPECT_EQ(folder.value("kestrel.ini", "SMS_03", "Name"), "");
}

}  // namespace
