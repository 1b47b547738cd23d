#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "lang/text_ids.h"
#include "tests/folder.h"
#include "tui/columns.h"

namespace {

constexpr std::size_t longest_text = 100;  // bytes
constexpr std::size_t longest_name = 30;
constexpr int title_width = 62;  // between the borders of a frame
constexpr int label_width = 50;  // leaves room for a value beside it

struct Language {
  std::string file;
  std::string name;
  std::vector<std::string> texts;
  const std::string& text(int number) const { return texts.at(static_cast<std::size_t>(number)); }
};

std::vector<std::string> language_files() {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(source_dir() + "/languages")) {
    files.push_back(entry.path().filename().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// Reads a file more strictly than the program does: whatever the program would skip, cut or
/// replace is a failure.
Language read_language(const std::string& file) {
  Language language{.file = file, .name = "", .texts = {}};
  const std::string bytes = read_file(source_dir() + "/languages/" + file);
  EXPECT_TRUE(bytes.ends_with('\n')) << "the last line has no end";
  std::istringstream lines(bytes);
  std::string line;
  std::getline(lines, language.name);
  while (std::getline(lines, line) && line != "[Harrier]") continue;
  EXPECT_EQ(line, "[Harrier]");
  while (std::getline(lines, line) && !line.empty()) {
    char key[32];
    std::snprintf(key, sizeof key, "String%03zu=\"", language.texts.size());
    if (!line.starts_with(key) || !line.ends_with('"') ||
        line.size() == std::string(key).size() - 1) {
      ADD_FAILURE() << "expected " << key << "...\" in place of " << line;
      break;
    }
    const std::size_t start = std::string(key).size();
    language.texts.push_back(line.substr(start, line.size() - start - 1));
  }
  language.texts.resize(std::max<std::size_t>(language.texts.size(), text::last_used + 1));
  return language;
}

/// The numbers of all texts that the program uses, by the names that it gives them.
std::map<std::string, int> named_texts() {
  std::map<std::string, int> numbers;
  std::istringstream header(read_file(source_dir() + "/lang/text_ids.h"));
  for (std::string line; std::getline(header, line);) {
    char name[64];
    char value[64];
    if (std::sscanf(line.c_str(), " %63[a-z0-9_] = %63[a-z0-9_],", name, value) != 2) continue;
    const auto other = numbers.find(value);
    numbers[name] = other != numbers.end() ? other->second : std::atoi(value);
  }
  EXPECT_EQ(numbers["last_used"], text::last_used);
  numbers.erase("condition_base");       // one less than the first condition
  numbers.erase("sensor_message_base");  // sensor events begin 22 numbers later
  return numbers;
}

struct Range {
  int first;
  int last;
};

/// Whatever is centred in a frame: titles, and the labels that head the screen of an editor.
const Range titles[] = {
    {0, 0},     {4, 4},     {16, 16},   {18, 20},   {25, 27},   {30, 30},   {33, 34},   {42, 43},
    {47, 47},   {49, 51},   {58, 59},   {66, 66},   {68, 68},   {73, 73},   {77, 77},   {79, 104},
    {106, 113}, {117, 117}, {127, 127}, {129, 130}, {133, 133}, {135, 138}, {141, 141}, {149, 150},
    {153, 153}, {155, 155}, {157, 157}, {160, 160}, {162, 170}, {175, 175}, {184, 184}, {187, 188},
    {190, 190}, {192, 195}, {197, 197}, {204, 204}, {209, 209}, {222, 222}, {234, 234}, {284, 284},
    {310, 310}, {328, 328}, {330, 330}, {338, 339}, {342, 342},
};

/// Labels with a value, a choice of on and off, or a range beside them.
const Range labels[] = {
    {18, 21},   {23, 27},   {33, 35},   {37, 38},   {41, 42},   {49, 51},   {59, 59},   {68, 68},
    {78, 78},   {101, 105}, {129, 130}, {133, 133}, {135, 139}, {141, 141}, {144, 144}, {146, 148},
    {152, 157}, {175, 175}, {186, 189}, {191, 196}, {205, 205}, {310, 310}, {332, 332},
};

void expect_columns(const Language& language, int number, int width) {
  const std::string& text = language.text(number);
  EXPECT_LE(columns(text), width) << "text " << number << ": " << text;
}

class Languages : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(Files, Languages, testing::ValuesIn(language_files()),
                         [](const auto& file) {
                           return file.param.substr(0, file.param.find('.'));
                         });

TEST_P(Languages, AreCompleteAndFitTheScreens) {
  const Language language = read_language(GetParam());
  EXPECT_FALSE(language.name.empty());
  EXPECT_LE(language.name.size(), longest_name);
  for (std::size_t i = 0; i < language.texts.size(); ++i) {
    const std::string& text = language.texts[i];
    EXPECT_LE(text.size(), longest_text) << "text " << i << ": " << text;
    for (std::string_view rest = text; !rest.empty();) {
      const std::string_view character = first_character(rest);
      EXPECT_TRUE(character.size() > 1 || (character[0] >= ' ' && character[0] <= '~'))
          << "text " << i << " is not printable UTF-8: " << text;
      rest.remove_prefix(character.size());
    }
  }
  for (const auto& [name, number] : named_texts()) {
    EXPECT_FALSE(language.text(number).empty()) << "text " << number << ", " << name;
  }
  for (const Range& range : titles) {
    for (int i = range.first; i <= range.last; ++i) expect_columns(language, i, title_width);
  }
  for (const Range& range : labels) {
    for (int i = range.first; i <= range.last; ++i) expect_columns(language, i, label_width);
  }
}

TEST_P(Languages, TellYesFromNoByTheFirstLetter) {
  const Language language = read_language(GetParam());
  const auto first = [&](int number) { return upper_case(first_letter(language.text(number))); };
  EXPECT_NE(first(text::yes), first(text::no));
  EXPECT_NE(language.text(text::flag_on), language.text(text::flag_off));
}

}  // namespace
