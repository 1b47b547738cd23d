#include <gtest/gtest.h>

#include "config/ini_reader.h"
#include "config/store.h"
#include "tests/tables.h"

namespace {

using Files = Folder::Files;

/// What a start of the program makes of these files when it saves them with these groups removed.
Files saved(const Files& files, const std::string& removed_groups = "") {
  const Folder folder(files);
  folder.use();
  actual_section = 255;
  EXPECT_EQ(LoadINI(), 0);
  for (const char number : removed_groups) INI.group[number - '0'] = {};
  EXPECT_EQ(SaveINI(), 0);
  return folder.files();
}

/// A line of tests/data/every_key as it is for entry `i`: "NN" becomes the number of the entry, and
/// a number grows by it. With `too_wide`, loading has to cut the value to that.
std::string entry_line(std::string line, int i, const std::string& digits, bool too_wide) {
  const std::size_t value = line.find('=') + 1;
  if (line.ends_with('"')) {
    if (line.substr(value + 1, 2) == "NN") line.replace(value + 1, 2, digits);
    return too_wide ? line.insert(line.size() - 1, "+") : line;
  }
  const int number = std::stoi(line.substr(value)) + i;
  const int beyond = number < 256 ? 5 * 256 : 5 * 65536;  // the wide fields have large numbers
  return line.substr(0, value) + std::to_string(too_wide ? number + beyond : number);
}

/// A file with every key at a value of its own. The section "Event_00-63" in tests/data stands for
/// 64 of them.
std::string every_key(const std::string& name, bool too_wide) {
  std::string file =
      "; This is file with configuration parameters for KESTREL \n; Do not change any line !\n\n";
  for (const Table& section : read_tables("every_key/" + name)) {
    const std::size_t range = section.name.find("00-");
    const int last = range == std::string::npos ? 0 : std::stoi(section.name.substr(range + 3));
    for (int i = 0; i <= last; ++i) {
      const std::string digits = std::to_string(i / 10) + std::to_string(i % 10);
      file += "[" + section.name.substr(0, range) + (last == 0 ? "" : digits) + "]\n";
      for (const Line& line : section.lines)
        file += entry_line(line[0], i, digits, too_wide) + "\n";
      file += "\n";
    }
  }
  return file;
}

Files every_file(bool too_wide) {
  Files files;
  for (const char* name : {"kestrel.ini", "jobs.ini", "sensor.ini"}) {
    files[name] = every_key(name, too_wide);
  }
  files["jobsSTS.ini"] = files["jobs.ini"];
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
