#include "schedule/jobs.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <regex>
#include <string>

#include "lang/lang_text.h"
#include "tests/arrow_path.h"
#include "tests/operator.h"
#include "tests/tables.h"

namespace {

constexpr const char* file = "jobs.ini";

std::string replaced(const std::string& text, const char* pattern, const std::string& by) {
  return std::regex_replace(text, std::regex(pattern), by);
}

/// Jobs that differ from the defaults in every value.
void fill_jobs(const Folder& folder) {
  std::string text = replaced(replaced(demo(file), "=[0-9]+", "=7"), "=\".*\"", "=\"/x\"");
  text = replaced(text, "Shutdown=7", "Shutdown=0");  // most events cannot shut down
  folder.write(file, with_value(text, "Job_08", "Shutdown", "7"));
}

/// The text of a jobs file with the defaults of one event of a UPS.
std::string with_defaults(const std::string& text, int event) {
  static const std::string english = read_file(source_dir() + "/languages/lang_00.ini");
  const int message = event == 2 ? 341 : 79 + event;
  const std::size_t begin = text.find("[Job_" + std::to_string(100 + event).substr(1)) + 8;
  const std::size_t end = text.find("\n\n", begin);
  std::string job = replaced(text.substr(begin, end - begin), "=[0-9]+", "=0");
  job = replaced(job, "(\nLog|\nLocalMessage)=0", "$1=1");
  if (event % 2 == 0) job = replaced(job, "(LocalMessageInterval)=0", "$1=60");
  job = replaced(job, "File=.*", "File=\"\"");
  const std::string key = "String" + std::to_string(1000 + message).substr(1);
  job = replaced(job, "(\nMessage=).*", "$1" + ini_value(english, "Harrier", key));
  return text.substr(0, begin) + job + text.substr(end);
}

TEST(JobDefaults, FollowTheEvent) {
  ASSERT_EQ(AllocText(), 0);
  for (const Line& line : read_table("job_defaults.txt")) {
    Job job;
    std::memset(&job, 0xEE, sizeof job);
    JobToDefault(job, std::stoi(line[0]), std::stoi(line[1]));
    Job expected = {};
    expected.Log = expected.LocalMessage = 1;
    expected.LocalMessageInterval = static_cast<std::uint16_t>(std::stoi(line[2]));
    expected.Message.assign(line[3]);
    EXPECT_EQ(std::memcmp(&job, &expected, sizeof job), 0) << line[0] << job.Message.view();
  }
  FreeText();
}

TEST(JobDefaults, AreRestoredForOneJobOrForAllOfUpsEvents) {
  const Folder folder;
  fill_jobs(folder);
  std::string expected = with_defaults(folder.read(file), 13);
  {
    Operator op(folder);
    op.open("5/4/2");  // not for all
    op.open("3/4/10");
    for (int i = 0; i < 3; ++i) {  // the question stays until the answer is no
      EXPECT_EQ(op.row(5),
                "****              Restore the defaults of this job?               ****");
      EXPECT_EQ(op.row(8), "  --> 1 - Yes");
      EXPECT_EQ(op.row(9), "      2 - No");
      op.enter();
    }
    op.choose("2");
    EXPECT_EQ(op.row(18), "  --> 10 - Restore the defaults of this job");
    EXPECT_EQ(op.quit("y"), 1);
    EXPECT_EQ(folder.read(file), expected);
  }
  for (int event = 0; event < 22; ++event) expected = with_defaults(expected, event);
  Operator op(folder);
  op.open("5/4/1");
  EXPECT_EQ(op.row(13), "  --> 4 - Restore the defaults of all jobs");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_EQ(folder.read(file), expected);
}

/// An editor in the folder of the program, where the search for commands begins.
void install_editor(const Folder& folder, const std::string& script) {
  folder.write("vi", "#!/bin/sh\n" + script);
  std::filesystem::permissions(folder.path("vi"), std::filesystem::perms::owner_all);
}

/// The screen is as before the editor ran, keys arrive at once and are not shown.
void expect_menu_again(Operator& op) {
  op.expect("--> 5 - Shutdown script");
  EXPECT_EQ(op.row(5), "****                      Jobs of UPS events                      ****");
  EXPECT_EQ(op.row(1), "");
  EXPECT_EQ(op.look("Jobs of"), white);
  EXPECT_EQ(op.cell(24, 1).look.background, 0);
  EXPECT_FALSE(op.cursor_visible() || op.canonical() || op.echo());
  EXPECT_EQ(arrow_path(op, 8), "8 10 8 6 4 3 1");
}

TEST(ShutdownScript, IsEditedInATerminalOfItsOwn) {
  const Folder folder;
  install_editor(folder,
                 "trap 'echo caught; read typed' INT\n"
                 "printf '\\033[44m%s:' \"$*\"\n"
                 "read line\n"
                 "echo \"$typed\" > \"$1\"\n"
                 "stty raw -echo\n"
                 "printf 'left alone'\n");
  Operator op(folder);
  op.open("5/5");
  EXPECT_EQ(op.row(10), "Edit the script ups_shut.scr in the text editor?");
  op.enter();
  op.expect("ups_shut.scr:");
  EXPECT_TRUE(op.canonical() && op.echo() && op.cursor_visible());
  EXPECT_FALSE(op.look("ups_shut.scr:").bold);
  op.type("\003");  // the editor may use this key for itself
  op.expect("caught");
  EXPECT_FALSE(op.shows("Jobs of"));
  op.type("shutdown -h now\r");
  expect_menu_again(op);
  EXPECT_EQ(op.quit(), 0);
  EXPECT_EQ(folder.read("ups_shut.scr"), "shutdown -h now\n");
}

TEST(ShutdownScript, LeavesTheScreenWholeWhateverTheEditorDoes) {
  struct Case {
    const char* path;
    const char* script;  // none: there is no editor
    const char* keys = "";
  };
  const char* waiting = "echo waiting; read line; echo done > ups_shut.scr\n";
  const Case cases[] = {
      {"5/5/1", nullptr},         {"5/5/1", "echo broken >&2; exit 3\n"},
      {"5/5/1", waiting, "\003"}, {"5/5/1", waiting, "\034"},
      {"5/5/2", waiting},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(readable(c.keys));
    const Folder folder;
    if (c.script != nullptr) install_editor(folder, c.script);
    Operator op(folder, {.environment = {{"PATH", folder.path()}}});
    op.open(c.path);
    if (c.keys[0] != '\0') {
      op.expect("waiting");
      op.type(c.keys);
    }
    expect_menu_again(op);
    EXPECT_EQ(op.quit(), 0);
    EXPECT_FALSE(folder.has("ups_shut.scr"));
  }
}

}  // namespace
