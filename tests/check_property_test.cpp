#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <random>
#include <vector>

#include "bench/largest.h"
#include "config/store.h"
#include "tests/check_properties.h"
#include "tests/tables.h"

namespace {

using namespace std::string_view_literals;
using Files = Folder::Files;
using Lines = std::vector<std::string>;

/// The same numbers for the same seed, whatever the library.
class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  std::size_t below(std::size_t limit) { return engine_() % limit; }
  bool once_in(std::size_t times) { return below(times) == 0; }
  char byte() { return static_cast<char>(below(256)); }

  /// One that is likely to matter.
  char odd_byte() {
    constexpr std::string_view odd = "\"\"\"[]=;#, \t\r\n\v\a\0\x1b\x7f\xc3\xa4\xff'0-x"sv;
    return once_in(4) ? byte() : odd[below(odd.size())];
  }

  template <typename T>
  const T& of(const std::vector<T>& list) {
    return list[below(list.size())];
  }

 private:
  std::mt19937 engine_;
};

/// A number from the environment.
unsigned setting(const char* name, unsigned otherwise) {
  const char* const value = std::getenv(name);
  return value == nullptr ? otherwise : static_cast<unsigned>(std::strtoul(value, nullptr, 10));
}

// --- Changes of a line --------------------------------------------------------------------------

std::size_t place_in(Random& random, const std::string& line) {
  return random.below(line.size() + 1);
}

std::string key_of(const std::string& line) { return line.substr(0, line.find('=') + 1); }

std::string with_typo(Random& random, std::string line) {
  const std::size_t at = random.below(line.size());
  switch (random.below(4)) {
    case 0:
      return line.erase(at, 1);
    case 1:
      return line.insert(at, 1, line[random.below(line.size())]);
    case 2:
      if (at > 0) std::swap(line[at], line[at - 1]);
      return line;
    default:
      line[at] = static_cast<char>(line[at] ^ 0x20);  // the other case of a letter
      return line;
  }
}

std::string with_odd_bytes(Random& random, std::string line) {
  for (std::size_t i = 0; i <= random.below(3); ++i) {
    line.insert(place_in(random, line), 1, random.odd_byte());
  }
  return line;
}

std::string after_something(Random& random, const std::string& line) {
  static const Lines starts = {";",   "; ", "#",  "# ", " ", "   ", "\t", " ;",
                               "\t;", "\a", "\r", "\v", "]", "[",   "=",  "\xEF\xBB\xBF"};
  return random.of(starts) + line;
}

std::string before_something(Random& random, const std::string& line) {
  static const Lines ends = {" ",        "\t", "\r", " ; why", "; why", " # why", "\"",  " \"",
                             "\" \"x\"", "]",  " ]", "=1",     "0",     "]\\",    " x=1"};
  return line + random.of(ends);
}

/// Numbers and texts, with a quote or without.
std::string with_value(Random& random, const std::string& line) {
  static const Lines values = {"",
                               "\"\"",
                               "0",
                               "1",
                               "2",
                               "-1",
                               "+1",
                               "007",
                               "255",
                               "256",
                               "257",
                               "300",
                               "65535",
                               "65536",
                               "-65535",
                               "99999999999999999999",
                               "-99999999999999999999",
                               "4294967296",
                               "0x10",
                               "yes",
                               "1.5",
                               " 1",
                               "1 ",
                               "\"1\"",
                               "\"1",
                               "1\"",
                               "\" 1\"",
                               "\"1\"2",
                               "\" \"",
                               "  ",
                               "text",
                               "\"text\"",
                               "\"text",
                               "text\"",
                               "te\"xt",
                               "\"te\"xt\"",
                               "\"\"text\"",
                               " \"text\"",
                               "\"text\" ",
                               "\"text\" ; why",
                               "\" text \"",
                               " text ",
                               "\"T\xC3\xBCr\"",
                               "\"T\xFCr\"",
                               "\"4B3DF1D00001040303\"",
                               "\"4b3df1d0000104030\"",
                               "\"4b3df1d00001040303ff\"",
                               "\"4B3DF1D00001000303\"",
                               "\"4B3DF1D0\""};
  return key_of(line) + random.of(values);
}

/// A line that is longer than its field, or than any line may be, perhaps with another line in it.
std::string lengthened(Random& random, std::string line) {
  static const Lines parts = {"",           "",          "\"",        "Port=1",  "Name=\"inner\"",
                              "[System]",   "[Network]", "[nowhere]", "; inner", "Type1=1",
                              "Shutdown=1", " ",         "\""};
  const std::string fill(1, "xxx \"0\xC3"[random.below(7)]);
  const std::size_t wanted = random.once_in(3)   ? 298 - line.size() % 298
                             : random.once_in(2) ? random.below(700)
                                                 : random.below(60);
  const std::size_t at = random.once_in(3) ? line.size() : place_in(random, line);
  std::string longer;
  for (std::size_t i = 0; i < wanted; ++i) longer += fill;
  return line.insert(at, longer + random.of(parts));
}

/// Another number for a section or a key that has one.
std::string renumbered(Random& random, std::string line) {
  const std::size_t end = line.starts_with('[') ? line.find(']') : line.find('=');
  if (end == std::string::npos || end < 2) return line;
  static const Lines numbers = {"00", "01", "02", "03", "05", "07", "08", "09",
                                "10", "15", "16", "17", "19", "20", "29", "30",
                                "31", "32", "63", "64", "99", "1",  "003"};
  return line.replace(end - 2, 2, random.of(numbers));
}

std::string twice(Random& random, const std::string& line) {
  return line + "\n" + (random.once_in(2) ? line : with_value(random, line));
}

std::string gone(Random&, const std::string&) { return ""; }

struct LineChange {
  const char* name;
  std::function<std::string(Random&, const std::string&)> change;
};

const LineChange line_changes[] = {
    {"typo", with_typo},        {"odd bytes", with_odd_bytes},
    {"start", after_something}, {"end", before_something},
    {"value", with_value},      {"value", with_value},
    {"longer", lengthened},     {"number", renumbered},
    {"twice", twice},           {"gone", gone},
};

// --- Changes of a folder ------------------------------------------------------------------------

Lines split(const std::string& bytes) {
  Lines lines;
  std::size_t start = 0;
  while (start < bytes.size()) {
    const std::size_t end = std::min(bytes.find('\n', start), bytes.size() - 1);
    lines.push_back(bytes.substr(start, end + 1 - start));
    start = end + 1;
  }
  return lines;
}

std::string joined(const Lines& lines) {
  std::string bytes;
  for (const std::string& line : lines) bytes += line;
  return bytes;
}

/// The lines of a section: of the first header from a random line on.
std::pair<std::size_t, std::size_t> section_in(Random& random, const Lines& lines) {
  const auto is_header = [](const std::string& line) { return line.starts_with('['); };
  const auto somewhere = lines.begin() + static_cast<std::ptrdiff_t>(random.below(lines.size()));
  const auto first = std::find_if(somewhere, lines.end(), is_header);
  const auto last = first == lines.end() ? first : std::find_if(first + 1, lines.end(), is_header);
  return {first - lines.begin(), last - lines.begin()};
}

const std::string& some_file(Random& random, const Files& files) {
  return std::next(files.begin(), static_cast<std::ptrdiff_t>(random.below(files.size())))->first;
}

/// Changes a line that says something. Returns what it did.
std::string change_line(Random& random, Lines& lines) {
  const std::size_t at = random.below(lines.size());
  std::string line = lines[at];
  const bool ended = line.ends_with('\n');
  if (ended) line.pop_back();
  if (line.empty()) return "";
  const LineChange& change = line_changes[random.below(std::size(line_changes))];
  const std::string changed = change.change(random, line);
  lines[at] = changed + (ended ? "\n" : "");
  return std::to_string(at + 1) + " " + change.name + " \"" + line + "\" -> \"" + changed + "\"";
}

std::string insert_lines(Random& random, Lines& lines, const Files& files) {
  const std::string& from = some_file(random, files);
  const Lines other = split(files.at(from));
  if (other.empty()) return "";
  auto [first, last] = section_in(random, other);
  if (random.once_in(2)) last = std::min(first + 1 + random.below(3), other.size());
  const std::size_t at = random.once_in(4) ? 0 : random.below(lines.size() + 1);
  for (std::size_t i = first; i < last; ++i) {
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at + i - first), other[i]);
  }
  return std::to_string(at + 1) + " insert " + from + ":" + std::to_string(first + 1) + "-" +
         std::to_string(last);
}

std::string move_section(Random& random, Lines& lines) {
  const auto [first, last] = section_in(random, lines);
  const auto begin = lines.begin();
  const Lines section(begin + static_cast<std::ptrdiff_t>(first),
                      begin + static_cast<std::ptrdiff_t>(last));
  lines.erase(begin + static_cast<std::ptrdiff_t>(first),
              begin + static_cast<std::ptrdiff_t>(last));
  const bool drop = random.once_in(3);
  const std::size_t at = random.below(lines.size() + 1);
  if (!drop)
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at), section.begin(), section.end());
  return std::to_string(first + 1) + (drop ? " drop section" : " section to ") +
         (drop ? "" : std::to_string(at + 1));
}

/// An entry that is not in use any more: without its first value, or with another one.
std::string empty_entry(Random& random, Lines& lines) {
  const auto [first, last] = section_in(random, lines);
  if (last - first < 2) return "";
  std::string& line = lines[first + 1];
  line = key_of(line) + (random.once_in(2) ? "0\n" : "\"\"\n");
  return std::to_string(first + 2) + " empty entry";
}

std::string change_bytes(Random& random, std::string& bytes) {
  const std::size_t at = random.below(bytes.size());
  switch (random.below(9)) {
    case 0:
      bytes = replaced(bytes, {{"\n", "\r\n"}});
      return "CR LF";
    case 1:
      bytes.insert(0, "\xEF\xBB\xBF");
      return "byte order mark";
    case 2:
      bytes.resize(at);
      return "cut at " + std::to_string(at);
    case 3:
      bytes.erase(bytes.find('\n', at) == std::string::npos ? at : bytes.find('\n', at), 1);
      return "joined lines at " + std::to_string(at);
    case 4:
      bytes.erase(0, at);
      return "begin at " + std::to_string(at);
    case 5:
      bytes = replaced(bytes, {{"\"", ""}});
      return "no quotes";
    case 6:
      bytes = replaced(bytes, {{"\n[", random.once_in(2) ? "\n [" : "\n\n["}});
      return "other space before headers";
    case 7: {
      std::string wide = "\xFF\xFE";
      for (const char byte : bytes) wide.append({byte, '\0'});
      bytes = wide;
      return "UTF-16";
    }
    default:
      bytes.insert(at, std::string(random.below(700), random.once_in(2) ? '\0' : random.byte()));
      return "a run of bytes at " + std::to_string(at);
  }
}

std::string change_files(Random& random, Files& files) {
  const std::string from = some_file(random, files);
  const std::string group = "group_0" + std::to_string(random.below(10)) + ".ini";
  switch (random.below(4)) {
    case 0:
      if (from == "kestrel.ini") return "";
      files.erase(from);
      return "no " + from;
    case 1:
      files[group] = files[from];
      return group + " like " + from;
    case 2:
      if (!files.contains("group_00.ini")) return "";
      files[group] = files["group_00.ini"];
      return group + " like group_00.ini";
    default:
      if (!files.contains("group_00.ini")) return "";
      files[group] = files["group_00.ini"];
      if (group != "group_00.ini") files.erase("group_00.ini");
      return group + " instead of group_00.ini";
  }
}

std::string change(Random& random, Files& files) {
  if (random.once_in(12)) return change_files(random, files);
  const std::string name = some_file(random, files);
  std::string& bytes = files[name];
  Lines lines = split(bytes);
  if (lines.empty()) return "";
  std::string account;
  switch (random.below(16)) {
    case 0:
      account = change_bytes(random, bytes);
      return name + ": " + account;
    case 1:
      account = insert_lines(random, lines, files);
      break;
    case 2:
      account = move_section(random, lines);
      break;
    case 3:
      account = empty_entry(random, lines);
      break;
    default:
      account = change_line(random, lines);
  }
  bytes = joined(lines);
  return name + ": " + account;
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
  const Folder folder(Files{});
  for (unsigned seed = seed_; seed < seed_ + folders_; ++seed) {
    Random random(seed);
    std::string bytes;
    const std::size_t size = random.below(4) * 20000;
    while (bytes.size() < size) bytes += random.odd_byte();
    make_record(bytes);
    ASSERT_EQ(first_false_alarm(folder), "") << "seed " << seed;
  }
}

}  // namespace
