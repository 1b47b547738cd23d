#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <sstream>

#include "config/ini_reader.h"
#include "config/store.h"
#include "tests/tables.h"
#include "tui/diag.h"

namespace {

using Files = Folder::Files;

/// What a start of the program makes of these files when it saves them with these groups removed.
Files saved(const Files& files, const std::string& removed_groups = "") {
  const Folder folder(files);
  std::snprintf(ProgramDir, sizeof ProgramDir, "%s/", folder.path().c_str());
  actual_section = 255;
  EXPECT_EQ(LoadINI(), 0);
  for (const char number : removed_groups) INI.group[number - '0'] = {};
  EXPECT_EQ(SaveINI(), 0);
  return folder.files();
}

/// Appends a section of tests/data/every_key as entry `i`: the number of its header becomes `i`,
/// "NN" in a text too, and a number grows by it. With `too_wide`, loading has to cut every value to
/// that.
void add_entry(std::string& file, const std::string& section, int i, bool too_wide) {
  const std::string digits = std::to_string(i / 10) + std::to_string(i % 10);
  std::istringstream lines(section);
  for (std::string line; std::getline(lines, line); file += line + '\n') {
    const std::size_t at = line.find('=') + 1;
    if (line.starts_with('[') && std::isdigit(line[line.size() - 2]) != 0) {
      line.replace(line.size() - 3, 2, digits);
    } else if (at != 0 && line[at] == '"') {
      if (line.substr(at + 1, 2) == "NN") line.replace(at + 1, 2, digits);
      if (too_wide) line.insert(line.size() - 1, "+");
    } else if (at != 0) {
      const int number = std::stoi(line.substr(at)) + i;
      const int beyond = number < 256 ? 5 * 256 : 5 * 65536;  // the wide fields have large numbers
      line.replace(at, std::string::npos, std::to_string(too_wide ? number + beyond : number));
    }
  }
  file += '\n';
}

/// A file with every key at a value of its own. A numbered section of the file in tests/data stands
/// for all up to its number.
std::string every_key(const std::string& name, bool too_wide) {
  std::istringstream lines(read_file(source_dir() + "/tests/data/every_key/" + name));
  std::string file;
  std::string section;
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty()) {
      section += line + '\n';
      continue;
    }
    const std::size_t end = std::min(section.find("]\n"), section.size());
    const bool numbered = end < section.size() && std::isdigit(section[end - 1]) != 0;
    const int last = numbered ? std::stoi(section.substr(end - 2)) : 0;
    for (int i = 0; i <= last; ++i) add_entry(file, section, i, too_wide);
    section.clear();
  }
  return file;
}

Files every_file(bool too_wide) {
  Files files = {{"kestrel.ini", every_key("kestrel.ini", too_wide)},
                 {"jobs.ini", every_key("jobs.ini", too_wide)},
                 {"jobsSTS.ini", every_key("jobs.ini", too_wide)},
                 {"sensor.ini", every_key("sensor.ini", too_wide)}};
  for (char i = '0'; i <= '9'; ++i) {
    files[std::string("group_0") + i + ".ini"] = every_key("group.ini", too_wide);
  }
  return files;
}

TEST(RoundTrip, KeepsTheDemoConfiguration) { EXPECT_EQ(saved(demo_with("")), demo_with("")); }

TEST(RoundTrip, CutsEveryKeyToItsWidthAndKeepsIt) {
  Files expected = every_file(false);
  for (int i = 0; i < 30; ++i) {  // these jobs never shut down
    const std::string section = "Job_" + std::to_string(i / 10) + std::to_string(i % 10);
    std::string& jobs = expected["jobs.ini"];
    if (i % 2 != 0 || i == 2 || i == 4) jobs = with_value(jobs, section, "Shutdown", "0");
  }
  EXPECT_EQ(saved(every_file(true)), expected);
  EXPECT_EQ(saved(expected), expected);
}

TEST(RoundTrip, SetsDefaultsAndClosesGaps) {
  const Table table = read_tables("saving.txt").at(0);
  Files files;
  for (const Line& line : table.lines) put_values(files, line[0]);
  files = saved(files);
  for (const Line& line : table.lines) {
    for (const Value& v : read_values(line[1])) {
      EXPECT_EQ(ini_value(files.at(v.file), v.section, v.key), v.text) << v.section << "." << v.key;
    }
  }
  // The defaults are in the record too, but in the loaded one alone.
  EXPECT_EQ(INI.serial[0].Device.view(), "AUTO");
  EXPECT_EQ(INI.email_config.Port, 25);
  EXPECT_EQ(INI.email_config.Timeout, 5);
  EXPECT_EQ(INI.osprey_modem_config.DeviceNo, 1);
  EXPECT_EQ(INI.wap_config.Port, 9200);
  EXPECT_TRUE(INI1.serial[0].Device.empty());
  EXPECT_EQ(INI1.wap_config.Port, 0);
}

TEST(RoundTrip, DeletesTheFileThatTheNextGroupWouldGet) {
  const Table table = read_tables("saving.txt").at(1);
  for (const Line& line : table.lines) {
    SCOPED_TRACE(line.number);
    Files files = {{"kestrel.ini", ""}};
    for (const char number : line[0]) {
      files[std::string("group_0") + number + ".ini"] =
          std::string("[Common]\nName=\"") + number + '"';
    }
    std::string after;
    for (const auto& [name, bytes] : saved(files, line[1])) {
      if (!name.starts_with("group_")) continue;
      after += (after.empty() ? "" : " ") + name.substr(7, 1) + "=" +
               ini_value(bytes, "Common", "Name").substr(1, 1);
    }
    EXPECT_EQ(after, line[2]);
  }
}

}  // namespace
