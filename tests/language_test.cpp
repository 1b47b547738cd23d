#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <vector>

#include "lang/lang_text.h"
#include "lang/text_ids.h"
#include "tests/random.h"
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
    const int status = folder.run(built_program("check_language") + " lang_15.ini >printed 2>&1");
    EXPECT_EQ(replaced(folder.read("printed"), {{"lang_15.ini: ", ""}, {"lang_15.ini:", ""}}),
              expected);
    EXPECT_EQ(status, expected.find("complete") == std::string::npos ? 1 : 0);
  }
}

/// A language file of several programs, made up at random, and what it must become.
class SharedFile {
 public:
  explicit SharedFile(unsigned seed) : random_(seed), style_(random_.below(3)) {
    others("Espa\u00f1ol\nVersion: 4.1\n");
    lines(true);
    others("[Merlin]\n");
    lines(true);
    for (std::size_t blocks = random_.below(4); blocks > 0; --blocks) {
      if (random_.once_in(2)) {
        section();
      } else {
        others(random_.once_in(2) ? "[Wren]\n" : "[Heron]\n");
        lines(true);
      }
    }
    std::string& end = !after_.empty() ? after_ : !section_.empty() ? section_ : before_;
    const std::size_t last_line = text().rfind('\n', text().size() - 2) + 1;
    if (random_.once_in(2) && text().find('[', last_line) == std::string::npos) end.pop_back();
  }

  std::string text() const { return before_ + section_ + after_; }

  /// With these lines as its section.
  std::string with(const std::string& section) const {
    const std::size_t end = section_.empty() ? before_.rfind('\n') : section_.find('\n');
    const char before_end = (section_.empty() ? before_ : section_)[end - 1];
    const std::string line_end = before_end == '\r' ? "\r\n" : "\n";
    const bool open = section_.empty() && !before_.ends_with('\n');
    return before_ + (open ? line_end : "") + replaced(section, {{"\n", line_end}}) + after_;
  }

 private:
  /// The lines with the line ends of the file: of Unix, of Windows, or mixed.
  std::string ended(const std::string& lines) {
    const bool windows = style_ == 1 || (style_ == 2 && random_.once_in(2));
    return windows ? replaced(lines, {{"\n", "\r\n"}}) : lines;
  }

  void others(const std::string& lines) { (section_.empty() ? before_ : after_) += ended(lines); }

  /// Lines that belong to no section [Harrier]; next to one of its texts only `texts` may not be.
  void lines(bool texts) {
    const std::string odd[] = {"\n",
                               "; [Harrier]\n",
                               " [Harrier]\n",
                               "stringString000=\"\"\n",
                               std::string(294 + random_.below(8), 'x') + "\n",
                               std::string(597, 'y') + "\n",
                               "[Harrier] \n",
                               "String422=\"more\"\n",
                               "String000=\"[Harrier]\"\n",
                               "[harrier]\n"};
    for (std::size_t count = random_.below(6); count > 0; --count)
      others(odd[random_.below(texts ? 10 : 7)]);
  }

  /// Nobody reads a second one.
  void section() {
    // The loader reads a long line in pieces, and finds the header in its second piece.
    if (random_.once_in(4)) others(std::string(298, 'z'));
    std::string bytes = ended("[Harrier]\n");
    for (std::size_t count = random_.below(5); count > 0; --count) {
      if (random_.once_in(4)) bytes += ended("; a remark\n\n");
      bytes +=
          ended("String" + format("%03d", static_cast<int>(random_.below(430))) + "=\"old\"\n");
      if (random_.once_in(8)) bytes.insert(bytes.rfind('"'), 400, '[');
    }
    (section_.empty() ? section_ : after_) += bytes;
    lines(false);
  }

  Random random_;
  std::size_t style_;
  std::string before_;
  std::string section_;  // ours
  std::string after_;
};

/// All texts that a file loads.
std::vector<std::string> texts_of(const std::string& path) {
  EXPECT_EQ(AllocText(), 0);
  EXPECT_EQ(LoadTextFile(harrier, path.c_str()), 0);
  std::vector<std::string> texts(LangText, LangText + text_count);
  FreeText();
  return texts;
}

TEST(Languages, ShareTheirFilesWithOtherPrograms) {
  const std::string from = source_dir() + "/languages/";
  for (unsigned round = 0; round < 10; ++round) {
    const Folder folder;
    const std::string command = "harrier-languages --from=" + from + " >printed 2>&1 ";
    std::map<std::string, SharedFile> files;
    for (unsigned i = 0; i < 15; ++i) {
      const std::string name = format("lang_%02u.ini", i);
      files.emplace(name, SharedFile(round * 15 + i));
      folder.write(name, files.at(name).text());
    }
    EXPECT_EQ(folder.run(command), 1) << folder.read("printed");
    for (const auto& [name, file] : files) EXPECT_EQ(folder.read(name), file.text());
    EXPECT_EQ(folder.run(command + "--apply"), 0) << folder.read("printed");
    for (const auto& [name, file] : files) {
      const std::string ours = read_file(from + name);
      EXPECT_EQ(folder.read(name), file.with(ours.substr(ours.find("[Harrier]")))) << file.text();
      EXPECT_EQ(texts_of(folder.path(name)), texts_of(from + name));
    }
    EXPECT_EQ(folder.run(command), 0) << folder.read("printed");
  }
}

}  // namespace
