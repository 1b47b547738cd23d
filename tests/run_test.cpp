#include <gtest/gtest.h>

#include <csignal>

#include "tests/operator.h"

namespace {

constexpr const char* main_menu_screen = R"(



**********************************************************************
****           Configuration of the Kestrel UPS service           ****
****                   Harrier 5.3.0 - 10/2012                    ****
****                                                              ****
****           Configuration of the Kestrel UPS service           ****
**********************************************************************
  --> 1 - System parameters
      2 - UPS parameters
      3 - Messages
      4 - Schedules
      5 - Jobs
----------------------------------------------------------------------
      0 - Leave this menu

**********************************************************************
)";

constexpr const char* question = "[y=Yes,n=No] :";

TEST(Start, ShowsTheMainMenu) {
  const Folder folder;
  Operator op(folder);
  EXPECT_EQ(op.screen(), main_menu_screen);
  EXPECT_EQ(op.look("1 - System parameters"), white);
  EXPECT_FALSE(op.cursor_visible());
  EXPECT_FALSE(op.echo());
  EXPECT_FALSE(op.canonical());
}

struct FailingStart {
  const char* name;
  Folder::Files files;
  const char* message;
  int status;
};

TEST(Start, SaysWhyItFails) {
  const std::string config = demo("kestrel.ini");
  const FailingStart cases[] = {
      {"no main file", {}, "Cannot load initialization file !", 2},
      {"no language file",
       {{"kestrel.ini", with_value(config, "System", "Language", "9")}},
       "Cannot load language strings file !",
       5},
      {"no section of ours",
       {{"kestrel.ini", config}, {"lang_00.ini", "English\n\n[harrier]\n[Harrier] \n[Osprey]\n"}},
       "Cannot load language strings file !",
       5},
  };
  for (const FailingStart& c : cases) {
    SCOPED_TRACE(c.name);
    const Folder folder(c.files);
    const Folder::Files before = folder.files();
    Operator op(folder);
    EXPECT_EQ(op.exit_status(), c.status);
    EXPECT_EQ(op.output(), std::string("\r\n\r") + c.message);
    EXPECT_TRUE(op.echo());
    EXPECT_EQ(folder.files(), before);
  }
}

#ifdef HARRIER_NO_MEMORY
TEST(Start, SaysThatMemoryForTheTextsIsLow) {
  const Folder folder;
  Operator op(folder, {.environment = {{"LD_PRELOAD", HARRIER_NO_MEMORY}}});
  EXPECT_EQ(op.exit_status(), 4);
  EXPECT_EQ(op.output(), "\r\n\rLow memory for strings !");
}
#endif

TEST(Start, FindsItsFilesBesideTheProgram) {
  const Folder folder;
  for (const std::string& name :
       {std::string("harrier"), std::string("./harrier"), folder.path("harrier")}) {
    SCOPED_TRACE(name);
    Operator op(folder, {.name = name});
    op.expect("1 - System parameters");
    EXPECT_EQ(op.quit(), 0);
  }
}

TEST(MainMenu, MovesTheArrowOverItsItems) {
  const Folder folder;
  Operator op(folder);
  for (int row : {12, 13, 14, 15, 17, 17}) {
    op.down();
    EXPECT_EQ(op.arrow(), row);
  }
  for (int row : {15, 14, 13, 12, 11, 11}) {
    op.up();
    EXPECT_EQ(op.arrow(), row);
  }
  // Neither other sequences nor digits choose anything; the last byte of a sequence counts.
  for (const char* keys : {"\x1b[C", "\x1b[D", "3", "0", "q"}) op.type(keys);
  EXPECT_EQ(op.screen(), main_menu_screen);
  op.type("\x1bOB");
  EXPECT_EQ(op.arrow(), 12);
}

TEST(Run, EndsWithoutAQuestionWhenNothingHasChanged) {
  const Folder folder;
  const Folder::Files before = folder.files();
  Operator op(folder);
  op.choose("1");
  op.leave();
  EXPECT_EQ(op.arrow(), 11);
  EXPECT_EQ(op.quit(), 0);
  EXPECT_EQ(op.output().find(question), std::string::npos);
  EXPECT_EQ(folder.files(), before);
  EXPECT_TRUE(op.echo());
  EXPECT_TRUE(op.canonical());
  EXPECT_TRUE(op.cursor_visible());
}

struct Answer {
  const char* typed;
  bool saves;
};

TEST(Run, SavesOnYesAlone) {
  const Answer cases[] = {{"y", true},  {"Yes", true}, {"\r \r\t y", true}, {"yellow fever", true},
                          {"n", false}, {"x", false},  {"1", false},        {"ny", false}};
  for (const Answer& c : cases) {
    SCOPED_TRACE(readable(c.typed));
    const Folder folder;
    const Folder::Files before = folder.files();
    Operator op(folder);
    op.open("1/1");
    op.type("Attic\r");
    EXPECT_EQ(op.quit(c.typed), c.saves ? 1 : 0);
    EXPECT_EQ(op.output().find("The changes have been saved") != std::string::npos, c.saves);
    if (c.saves) {
      EXPECT_EQ(folder.value("kestrel.ini", "System", "Name"), "\"Attic\"");
    } else {
      EXPECT_EQ(folder.files(), before);
    }
  }
}

}  // namespace
