#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <sstream>

#include "lang/text_ids.h"
#include "tests/tables.h"
#include "tui/format.h"

namespace {

/// Returns what the checker prints about a file, without the path of the file. `status` becomes its
/// exit status.
std::string check(const std::string& path, int& status) {
  FILE* pipe = popen((HARRIER_CHECK_LANGUAGE " " + path + " 2>&1").c_str(), "r");
  std::string output;
  for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
  status = WEXITSTATUS(pclose(pipe));
  return replaced(output, {{path + ": ", ""}, {path + ":", ""}});
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

}  // namespace
