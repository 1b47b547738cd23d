#include "config/ini_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>

#include "config/families.h"
#include "tests/tables.h"
#include "tui/format.h"

namespace {

constexpr const char* file_names[] = {"main", "jobs", "group", "sensor", "states"};

/// The values of an entry that are not 0 or empty, as "Section.Key=value" lines. After the end of a
/// text nothing may be left of a longer one.
std::string values_of(const Family& family, char* entry, const std::string& section) {
  std::string out;
  for (const Field& field : family.fields) {
    std::string value = field.kind == Kind::text ? std::string(bytes_at(field, entry), field.width)
                                                 : std::to_string(number_at(field, entry));
    value.erase(value.find_last_not_of('\0') + 1);
    if (value.empty() || value == "0") continue;
    out.append(section).append(".").append(field.key).append("=").append(value).append("\n");
  }
  return out;
}

/// Those of the whole record.
std::string loaded() {
  std::string out;
  for (int file = 0; file < file_count; ++file) {
    for (std::size_t group = 0; group < (file == group_file ? group_count : 1U); ++group) {
      const std::string number = file == group_file ? std::to_string(group) + " " : "";
      const std::string name = file_names[file] + (" " + number);
      for (const Family& family : families_of(file)) {
        char* entry = reinterpret_cast<char*>(&INI) + family.offset + group * sizeof(Group);
        for (int i = 0; i < family.stored; ++i, entry += family.size) {
          std::string section = name;
          section.append(family.name).append(family.count == 0 ? "" : format("%02d", i));
          out += values_of(family, entry, section);
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

/// Reads `bytes` as the file that a name such as "main" or "group 3" stands for.
void read(const Folder& folder, const std::string& name, const std::string& bytes) {
  const auto at =
      std::find(std::begin(file_names), std::end(file_names), name.substr(0, name.find(' ')));
  if (name.starts_with("group ")) g_index = static_cast<std::uint8_t>(std::stoi(name.substr(6)));
  folder.write("x.ini", bytes);
  EXPECT_EQ(EncodeINIFile(static_cast<int>(at - file_names), folder.path("x.ini").c_str()), 0);
}

void start_run() {
  std::memset(&INI, 0, sizeof INI);
  actual_section = 255;
}

TEST(Reader, TakesWhatItUnderstands) {
  const Folder folder(Folder::Files{});
  for (const Table& table : read_tables("reader_cases.txt")) {
    SCOPED_TRACE(table.name);
    std::string expected;
    std::vector<std::pair<std::string, std::string>> files;
    for (const Line& line : table.lines) {
      const bool input = line[0] != "=";
      if (input && (files.empty() || files.back().first != line[0]))
        files.emplace_back(line[0], "");
      (input ? files.back().second : expected) += bytes_of(line[1]);
    }
    start_run();
    for (const auto& [name, bytes] : files) read(folder, name, bytes);
    EXPECT_EQ(loaded(), expected);
  }
}

TEST(Reader, TakesNothingFromWhatItCannotRead) {
  const Folder folder(Folder::Files{});
  start_run();
  EXPECT_EQ(EncodeINIFile(main_file, folder.path("none").c_str()), 1);
  EXPECT_EQ(EncodeINIFile(main_file, folder.path().c_str()), 1);  // a folder
  EXPECT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(EncodeINIFile(main_file, folder.path("pipe").c_str()), 1);  // without waiting
  for (const int section : {-1, 100, 255}) FillVar(main_file, section, 0);
  for (const int file : {-1, 5}) FillVar(file, 0, 0);
  FillVar(main_file, 1, 6);
  EXPECT_EQ(loaded(), "");
}

}  // namespace
