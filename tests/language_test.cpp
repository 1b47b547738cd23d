#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <regex>
#include <sstream>

#include "lang/text_ids.h"
#include "tests/tables.h"
#include "tui/format.h"

namespace {

/// Runs the checker and returns what it prints. `status` becomes its exit status.
std::string run_checker(const std::string& arguments, int& status) {
  FILE* pipe = popen((HARRIER_CHECK_LANGUAGE " " + arguments + " 2>&1").c_str(), "r");
  std::string output;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
  status = WEXITSTATUS(pclose(pipe));
  return output;
}

/// Returns what the checker prints about a file, without the path of the file.
std::string check(const std::string& path, int& status) {
  return std::regex_replace(run_checker(path, status), std::regex(path + ": ?"), "");
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
  std::string sound = "Backwards\nVersion: 1\n[Harrier]\n";
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
    folder.write("lang_15.ini", broken);
    std::string expected;
    for (std::size_t i = 2; i < line.cells.size(); ++i) expected += english(line[i]) + "\n";
    int status;
    EXPECT_EQ(check(folder.path("lang_15.ini"), status), expected);
    EXPECT_EQ(status, expected.find("complete") == std::string::npos ? 1 : 0);
  }
}

TEST(Languages, AreListedTextByText) {
  int status;
  const std::string list = run_checker("--list", status);
  EXPECT_EQ(status, 0);
  // Each text that English has, and no other.
  static const std::regex used("\nString([0-9]+)=\"[^\"]");
  static const std::regex row("\n *([0-9]+) ");
  const auto numbers = [](const std::string& text, const std::regex& form) {
    std::vector<int> found;
    for (std::sregex_iterator at(text.begin(), text.end(), form), end; at != end; ++at) {
      found.push_back(std::stoi((*at)[1]));
    }
    return found;
  };
  EXPECT_EQ(numbers(list, row), numbers(read_file(source_dir() + "/languages/lang_00.ini"), used));
  // The documentation shows a row of each kind.
  const std::string page = read_file(source_dir() + "/docs/languages.md");
  std::istringstream rows(page.substr(page.find("    text  columns")));
  int shown = 0;
  for (std::string line; std::getline(rows, line) && !line.empty(); ++shown) {
    EXPECT_NE(("\n" + list).find("\n" + line.substr(4) + "\n"), std::string::npos) << line;
  }
  EXPECT_GT(shown, 1);
}

TEST(Languages, AreCheckedOnlyIfTheCommandLineIsSound) {
  for (const char* arguments : {"", "--list lang_00.ini", "--lists", "lang_32.ini"}) {
    SCOPED_TRACE(arguments);
    int status;
    run_checker(arguments, status);
    EXPECT_EQ(status, 2);
  }
}

}  // namespace
