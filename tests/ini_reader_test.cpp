#include "config/ini_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <sstream>

#include "config/families.h"
#include "tests/tables.h"

namespace {

constexpr std::string_view kind_names[] = {"main", "jobs", "group", "sensor", "states"};

/// Every value of the record that is not 0 or empty, as "Section.Key=value" lines.
std::string loaded() {
  std::string out;
  for (int kind = 0; kind < kind_count; ++kind) {
    for (int group = 0; group < (kind == group_file ? group_count : 1); ++group) {
      const std::string file = kind == group_file        ? "group " + std::to_string(group) + " "
                               : kind == jobs_file       ? "jobs "
                               : kind == job_states_file ? "states "
                                                         : "";
      for (const Family& family : families_of(kind)) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(family.stored); ++i) {
          const char* entry = reinterpret_cast<const char*>(&INI) + family.offset +
                              static_cast<std::size_t>(group) * sizeof(Group) + i * family.size;
          std::string section = file + family.name;
          if (family.count != 0) section += std::to_string(i / 10) + std::to_string(i % 10);
          for (const Field& field : family.fields) {
            const std::string value = field.kind == Kind::text
                                          ? std::string(text_at(field, entry))
                                          : std::to_string(number_at(field, entry));
            if (value.empty() || value == "0") continue;
            out.append(section).append(".").append(field.key) += "=" + value + "\n";
          }
        }
      }
    }
  }
  return out;
}

/// The bytes that a cell stands for, with the line feed.
std::string bytes_of(const std::string& cell) {
  constexpr std::string_view letters = "stra0";
  constexpr char characters[] = " \t\r\a";
  std::string line;
  for (auto c = cell.begin(); c != cell.end(); ++c) {
    if (*c == '\\' && ++c == cell.end()) return line;
    line += c != cell.begin() && c[-1] == '\\' ? characters[letters.find(*c)] : *c;
  }
  return line + '\n';
}

/// Reads a file of a kind such as "main" or "group 3".
void read(const std::string& kind, const std::string& bytes) {
  const Folder folder({{"x.ini", bytes}});
  std::istringstream words(kind);
  std::string name;
  int group = 0;
  words >> name >> group;
  g_index = static_cast<std::uint8_t>(group);
  const auto* at = std::find(std::begin(kind_names), std::end(kind_names), name);
  EXPECT_EQ(EncodeINIFile(static_cast<int>(at - kind_names), folder.path("x.ini").c_str()), 0);
}

void start_run() {
  std::memset(&INI, 0, sizeof INI);
  actual_section = 255;
}

TEST(Reader, TakesWhatItUnderstands) {
  for (const Table& table : read_tables("reader_cases.txt")) {
    SCOPED_TRACE(table.name);
    start_run();
    std::string expected;
    std::string file;
    for (std::size_t i = 0; i < table.lines.size(); ++i) {
      const std::string& kind = table.lines[i][0];
      (kind == "=" ? expected : file) += bytes_of(table.lines[i][1]);
      const bool ends = i + 1 == table.lines.size() || table.lines[i + 1][0] != kind;
      if (kind == "=" || !ends) continue;
      read(kind, file);
      file.clear();
    }
    EXPECT_EQ(loaded(), expected);
  }
}

TEST(Reader, LeavesTheSameBytesBehindAShorterText) {
  start_run();
  read("main", "[System]\nName=b\n");
  const Record expected = INI;
  start_run();
  read("main", "[System]\nName=something longer than 32 characters\nName=b\n");
  EXPECT_EQ(std::memcmp(&INI, &expected, sizeof INI), 0);
}

TEST(Reader, TakesNothingFromWhatItCannotRead) {
  const Folder folder(Folder::Files{});
  start_run();
  EXPECT_EQ(EncodeINIFile(main_file, folder.path("none").c_str()), 1);
  EXPECT_EQ(EncodeINIFile(main_file, folder.path().c_str()), 0);  // a folder opens and is empty
  EXPECT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(EncodeINIFile(main_file, folder.path("pipe").c_str()), 0);  // without waiting
  for (const int section : {-1, 100, 255}) FillVar(main_file, section, 0);
  for (const int kind : {-1, 5}) FillVar(kind, 0, 0);
  FillVar(main_file, 1, 6);
  EXPECT_EQ(loaded(), "");
}

}  // namespace
