#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <regex>
#include <sstream>

#include "menus/screen_kit.h"
#include "tests/tables.h"

namespace {

/// What the checker prints about a file, without its path; `status` becomes its exit status.
std::string check(const std::string& path, int& status) {
  FILE* pipe = popen((HARRIER_CHECK_LANGUAGE " " + path + " 2>&1").c_str(), "r");
  std::string output;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
  status = WEXITSTATUS(pclose(pipe));
  return std::regex_replace(output, std::regex(path + ": ?"), "");
}

TEST(Languages, AreCompleteAndFitTheScreens) {
  for (const auto& file : std::filesystem::directory_iterator(source_dir() + "/languages")) {
    int status;
    const std::string output = check(file.path(), status);
    EXPECT_EQ(status, 0) << file.path() << "\n" << output;
  }
}

TEST(Languages, AreTakenApartByTheirCheck) {
  const Folder folder;
  // The number of a text, backwards, is short and begins unlike those near it.
  std::string sound = "Backwards\nVersion: 5.3.0\n[Harrier]\n";
  for (int i = 0; i <= text::last_used; ++i) {
    const std::string number = format("%03d", i);
    sound += "String" + number + "=\"" + std::string(number.rbegin(), number.rend()) + "\"\n";
  }
  for (const Line& line : read_table("language_faults.txt")) {
    SCOPED_TRACE("language_faults.txt, line " + std::to_string(line.number));
    std::istringstream lines(sound);
    std::string broken;
    int number = 0;
    for (std::string text; std::getline(lines, text);) {
      if (std::to_string(++number) == line[0]) text = keys(english(line[1]));
      if (text != "<none>") broken += text + "\n";
    }
    folder.write("lang_15.ini", std::regex_replace(broken, std::regex("<FF>"), "\xFF"));
    std::string expected;
    for (std::size_t i = 2; i < line.cells.size(); ++i) expected += english(line[i]) + "\n";
    int status;
    EXPECT_EQ(check(folder.path("lang_15.ini"), status), expected);
    EXPECT_EQ(status, expected.find("complete") == std::string::npos ? 1 : 0);
  }
}

}  // namespace
