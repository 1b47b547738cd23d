#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <regex>

#include "bench/largest.h"
#include "config/store.h"
#include "tests/check_properties.h"
#include "tests/random.h"
#include "tests/tables.h"

namespace {

using namespace std::string_view_literals;
using Files = Folder::Files;

/// A number from the environment.
unsigned setting(const char* name, unsigned otherwise) {
  const char* const value = std::getenv(name);
  return value == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}

/// The first part from a random place on that fits an expression, with "^" and "$" for the ends of
/// lines.
std::smatch find(Random& random, const std::string& bytes, const std::string& expression) {
  constexpr std::size_t furthest = 2000;  // more might exhaust the stack
  const std::size_t at = random.below(bytes.size() + 1);
  const auto start = bytes.begin() + static_cast<std::ptrdiff_t>(at);
  const auto end = start + static_cast<std::ptrdiff_t>(std::min(furthest, bytes.size() - at));
  const auto before =
      at == 0 ? std::regex_constants::match_default : std::regex_constants::match_prev_avail;
  std::smatch found;
  std::regex_search(start, end, found,
                    std::regex(expression, std::regex::ECMAScript | std::regex::multiline), before);
  return found;
}

std::size_t start_of_line(const std::string& bytes, std::size_t at) {
  return at == 0 ? 0 : bytes.rfind('\n', at - 1) + 1;
}

/// Makes a run out of "<fill>" in a text that begins at this column.
std::string filled(Random& random, std::string text, std::size_t column) {
  constexpr std::string_view mark = "<fill>";
  constexpr std::size_t longest_line = 298;
  const std::size_t at = text.find(mark);
  if (at == std::string::npos) return text;
  const std::size_t size = random.once_in(3)   ? longest_line - (column + at) % longest_line
                           : random.once_in(2) ? random.below(700)
                                               : random.below(60);
  return text.replace(at, mark.size(), size, random.one_of("xxx \"0\xC3"));
}

std::string change_place(Random& random, std::string& bytes, const Line& row) {
  const std::smatch found = find(random, bytes, row[0]);
  if (found.empty()) return "";
  const auto at = static_cast<std::size_t>(found[0].first - bytes.begin());
  const std::string form = keys(row[1 + random.below(row.cells.size() - 1)]);
  const std::string text = filled(random, found.format(form), at - start_of_line(bytes, at));
  std::string account = std::to_string(at) + " " + testing::PrintToString(found.str()) + " -> " +
                        testing::PrintToString(text);
  bytes.replace(at, found.str().size(), text);
  return account;
}

std::string change_all(std::string& bytes, const Line& row) {
  for (std::size_t i = 0; i < row.cells.size(); i += 2) {
    bytes = std::regex_replace(bytes, std::regex(row[i]), keys(row[i + 1]));
  }
  return "everywhere " + row[0];
}

/// Those of one place, and those of a whole file.
const std::vector<Table>& changes() {
  static const std::vector<Table> tables = read_tables("changes.txt");
  return tables;
}

/// Changes the files in some way. Returns an account of it.
std::string change(Random& random, Files& files) {
  auto& [name, bytes] = random.one_of(files);
  const std::size_t at = random.below(bytes.size() + 1);
  switch (random.below(20)) {
    case 0:
      return name + ": " + change_all(bytes, random.one_of(changes().at(1).lines));
    case 1:
      bytes = random.once_in(2) ? bytes.substr(0, at) : bytes.substr(at);
      return name + ": a part up to " + std::to_string(at) + ", or from there on";
    case 2: {
      const auto& from = random.one_of(files);
      const char* const part = random.once_in(2) ? "\\[[^[]*" : "[^\n]*\n";
      const std::string text = find(random, from.second, part).str();
      bytes.insert(random.once_in(4) ? 0 : start_of_line(bytes, at), text);
      return name + ": " + std::to_string(at) + ": from " + from.first + " " + text;
    }
    case 3: {
      const std::string from = random.once_in(2) ? "group_00.ini" : name;
      const std::string group = "group_0" + std::to_string(random.below(10)) + ".ini";
      const std::string copy = files[from];
      if (from != "kestrel.ini" && random.once_in(2)) files.erase(from);
      files[group] = copy;
      return group + ": from " + from;
    }
    default:
      return name + ": " + change_place(random, bytes, random.one_of(changes().at(0).lines));
  }
}

/// The largest configuration, but of the groups only a few: they are all alike.
Files largest_files() {
  const Folder folder(Files{});
  folder.use();
  fill_record();
  for (int group = 2; group < group_count; ++group) INI.group[group] = {};
  EXPECT_EQ(SaveINI(), 0);
  return folder.files();
}

class CheckProperty : public testing::Test {
 protected:
  CheckProperty() {
    if (access("/dev/shm", W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);  // no disk is needed
  }

  const unsigned seed_ = setting("HARRIER_SEED", 1);
  const unsigned folders_ = setting("HARRIER_FOLDERS", 300);
};

TEST(Changes, AreMade) {
  for (const Table& table : changes()) {
    for (const Line& row : table.lines) {
      Random random(static_cast<unsigned>(row.number));
      EXPECT_FALSE(find(random, demo_with("")["kestrel.ini"], row[0]).empty()) << row.number;
    }
  }
}

TEST_F(CheckProperty, NothingGoesSilently) {
  Files demo = demo_with("");
  demo.erase("ups_shut.scr");
  const Files largest = largest_files();
  const Folder folder(Files{});
  for (unsigned seed = seed_; seed < seed_ + folders_; ++seed) {
    Random random(seed);
    Files files = random.once_in(20) ? largest : demo;
    std::string changes;
    for (std::size_t i = 0; i == 0 || random.below(3) != 0; ++i) {
      changes += "\n  " + change(random, files);
    }
    folder.hold(files);
    ASSERT_EQ(first_silent_line(folder), "") << "seed " << seed << changes;
  }
}

TEST_F(CheckProperty, NothingSavedIsBlamed) {
  constexpr std::string_view odd = "\"\"\"[]=;#, \t\r\n\v\a\0\x1b\x7f\xc3\xa4\xff'0-x"sv;
  const Folder folder(Files{});
  for (unsigned seed = seed_; seed < seed_ + folders_; ++seed) {
    Random random(seed);
    std::string bytes(random.below(4) * 20000, '\0');
    for (char& byte : bytes)
      byte = random.once_in(4) ? static_cast<char>(random.below(256)) : random.one_of(odd);
    make_record(bytes);
    ASSERT_EQ(first_false_alarm(folder), "") << "seed " << seed;
  }
}

}  // namespace
