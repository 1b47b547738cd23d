#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "lang/text_ids.h"
#include "tests/tables.h"
#include "tui/format.h"

namespace {

TEST(Languages, AreTakenApartByTheirCheck) {
  const Folder folder;
  // The number of a text, backwards, is short and begins unlike those near it.
  std::string sound = "Backwards\nVersion: 1\n[Harrier]\n";
  for (int i = 0; i <= text::last_used; ++i) {
    const std::string number = format("%03d", i);
    const char* const end = i == text::flag_off ? "x" : "";  // wider than the word for on
    sound += "String" + number + "=\"" + std::string(number.rbegin(), number.rend()) + end + "\"\n";
  }
  const Table faults = read_tables("language_faults.txt").at(0);
  for (const Line& line : faults.lines) {
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
    const std::string command = "cd " + folder.path() + "; " + built_program("check_language") +
                                " lang_15.ini >printed 2>&1";
    const int status = std::system(command.c_str());
    EXPECT_EQ(replaced(folder.read("printed"), {{"lang_15.ini: ", ""}, {"lang_15.ini:", ""}}),
              expected);
    EXPECT_EQ(WEXITSTATUS(status), expected.find("complete") == std::string::npos ? 1 : 0);
  }
}

}  // namespace
