#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sstream>

#include "lang/text_ids.h"
#include "tests/tables.h"
#include "tui/columns.h"

namespace {

/// Reads a file more strictly than the program does: whatever the program would skip, cut or
/// replace is a failure.
std::vector<std::string> read_texts(const std::string& path) {
  static const std::regex form("String([0-9]{3})=\"(.*)\"");
  const std::string bytes = read_file(path);
  EXPECT_TRUE(bytes.ends_with('\n')) << "the last line has no end";
  std::istringstream lines(bytes);
  std::string line;
  std::getline(lines, line);
  EXPECT_TRUE(!line.empty() && line.size() <= 30U) << line;
  while (std::getline(lines, line) && line != "[Harrier]") continue;
  std::vector<std::string> texts;
  while (std::getline(lines, line) && !line.empty()) {
    std::smatch found;
    const bool next = std::regex_match(line, found, form) && std::stoul(found[1]) == texts.size();
    EXPECT_TRUE(next) << "text " << texts.size() << " is missing before " << line;
    if (!next) break;
    texts.push_back(found[2]);
  }
  texts.resize(std::max<std::size_t>(texts.size(), text::last_used + 1));
  return texts;
}

/// The numbers of all texts that the program uses, by the names that it gives them.
std::map<std::string, int> named_texts() {
  static const std::regex row("\n *([a-z0-9_]+) = ([a-z0-9_]+)");
  const std::string header = read_file(source_dir() + "/lang/text_ids.h");
  std::map<std::string, int> numbers;
  for (std::sregex_iterator at(header.begin(), header.end(), row), end; at != end; ++at) {
    const auto other = numbers.find((*at)[2]);
    numbers[(*at)[1]] = other != numbers.end() ? other->second : std::stoi((*at)[2]);
  }
  EXPECT_EQ(numbers["last_used"], text::last_used);
  numbers.erase("condition_base");       // one less than the first condition
  numbers.erase("sensor_message_base");  // sensor events begin 22 numbers later
  return numbers;
}

TEST(Languages, AreCompleteAndFitTheScreens) {
  for (const auto& file : std::filesystem::directory_iterator(source_dir() + "/languages")) {
    SCOPED_TRACE(file.path().filename());
    const std::vector<std::string> texts = read_texts(file.path());
    for (const std::string& text : texts) {
      EXPECT_LE(text.size(), 100U) << text;
      for (std::string_view rest = text; !rest.empty();) {
        const std::string_view character = first_character(rest);
        EXPECT_TRUE(character.size() > 1 || (character[0] >= ' ' && character[0] <= '~'))
            << "not printable UTF-8: " << text;
        rest.remove_prefix(character.size());
      }
    }
    for (const auto& [name, number] : named_texts()) {
      EXPECT_FALSE(texts.at(static_cast<std::size_t>(number)).empty()) << name << " " << number;
    }
    for (const Table& width : read_tables("languages.txt")) {
      for (const Line& line : width.lines) {
        for (const std::string& range : line.cells) {  // "4" or "18-20"
          const std::size_t last = std::stoul(range.substr(range.find('-') + 1));
          for (std::size_t i = std::stoul(range); i <= last; ++i) {
            EXPECT_LE(columns(texts.at(i)), std::stoi(width.name)) << i << ": " << texts[i];
          }
        }
      }
    }
    // The answer to a question is told by its first letter.
    EXPECT_NE(upper_case(first_letter(texts[text::yes])),
              upper_case(first_letter(texts[text::no])));
    EXPECT_NE(texts[text::flag_on], texts[text::flag_off]);
  }
}

}  // namespace
