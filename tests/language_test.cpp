#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>
#include <sstream>
#include <vector>

#include "lang/lang_text.h"
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

/// A language file of several programs, made up at random, and what it must become.
class SharedFile {
 public:
  explicit SharedFile(unsigned seed) : random_(seed), style_(below(3)) {
    others("Espa\u00f1ol\nVersion: 4.1\n");
    lines(true);
    others("[Merlin]\n");
    lines(true);
    for (int blocks = below(4); blocks > 0; --blocks) {
      if (below(2) == 0)
        section();
      else
        other_section();
    }
    const std::size_t last = text_.rfind('\n', text_.size() - 2) + 1;
    if (below(2) == 0 && text_.find('[', last) == std::string::npos) {
      text_.pop_back();
      if (!ours_is_last_) (header_.empty() ? before_ : after_).pop_back();
    }
  }

  std::string text() const { return text_; }

  /// With these lines as its section.
  std::string with(const std::string& section) const {
    const std::string& model = header_.empty() ? before_ : header_;
    const std::size_t end = model.rfind('\n');
    const std::string line_end = model[end - 1] == '\r' ? "\r\n" : "\n";
    const bool open = header_.empty() && !before_.ends_with('\n');
    return before_ + (open ? line_end : "") + replaced(section, {{"\n", line_end}}) + after_;
  }

 private:
  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  /// The lines with the line ends of the file: of Unix, of Windows, or mixed.
  std::string ended(const std::string& lines) {
    const bool windows = style_ == 1 || (style_ == 2 && below(2) == 0);
    return windows ? replaced(lines, {{"\n", "\r\n"}}) : lines;
  }

  void others(const std::string& lines) {
    const std::string bytes = ended(lines);
    text_ += bytes;
    (header_.empty() ? before_ : after_) += bytes;
    ours_is_last_ = false;
  }

  /// Lines that belong to no section [Harrier]; next to one of its texts only `texts` may not be.
  void lines(bool texts) {
    const std::string odd[] = {"\n",
                               "; [Harrier]\n",
                               " [Harrier]\n",
                               "stringString000=\"\"\n",
                               std::string(static_cast<std::size_t>(294 + below(8)), 'x') + "\n",
                               std::string(597, 'y') + "\n",
                               "[Harrier] \n",
                               "String422=\"more\"\n",
                               "String000=\"[Harrier]\"\n",
                               "[harrier]\n"};
    for (int count = below(6); count > 0; --count) others(odd[below(texts ? 10 : 7)]);
  }

  void other_section() {
    others(below(2) == 0 ? "[Wren]\n" : "[Heron]\n");
    lines(true);
  }

  /// Nobody reads a second one.
  void section() {
    // The loader reads a long line in pieces, and finds the header in its second piece.
    if (below(4) == 0) others(std::string(298, 'z'));
    std::string bytes = ended("[Harrier]\n");
    const std::string header = bytes;
    for (int count = below(5); count > 0; --count) {
      if (below(4) == 0) bytes += ended("; a remark\n\n");
      bytes += ended("String" + format("%03d", below(430)) + "=\"old\"\n");
      if (below(8) == 0) bytes.insert(bytes.rfind('"'), 400, '[');
    }
    text_ += bytes;
    ours_is_last_ = header_.empty();
    if (header_.empty())
      header_ = header;
    else
      after_ += bytes;
    lines(false);
  }

  std::mt19937 random_;
  int style_;
  std::string text_;
  std::string before_;
  std::string header_;  // of the section
  std::string after_;
  bool ours_is_last_ = false;
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
    const std::string command = built_program("harrier-languages") + " --from=" + from + " " +
                                folder.path() + " >" + folder.path("printed") + " 2>&1 ";
    std::map<std::string, SharedFile> files;
    for (unsigned i = 0; i < 15; ++i) {
      const std::string name = format("lang_%02u.ini", i);
      files.emplace(name, SharedFile(round * 15 + i));
      folder.write(name, files.at(name).text());
    }
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1) << folder.read("printed");
    for (const auto& [name, file] : files) EXPECT_EQ(folder.read(name), file.text());
    EXPECT_EQ(WEXITSTATUS(std::system((command + "--apply").c_str())), 0) << folder.read("printed");
    for (const auto& [name, file] : files) {
      const std::string ours = read_file(from + name);
      EXPECT_EQ(folder.read(name), file.with(ours.substr(ours.find("[Harrier]")))) << file.text();
      EXPECT_EQ(texts_of(folder.path(name)), texts_of(from + name));
    }
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 0) << folder.read("printed");
  }
}

}  // namespace
