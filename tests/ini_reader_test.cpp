#include "config/ini_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "config/fields.h"
#include "tests/folder.h"

namespace {

using namespace std::string_literals;

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
        for (int i = 0; i < family.stored; ++i) {
          const char* entry = reinterpret_cast<const char*>(&INI) + family.offset +
                              static_cast<std::size_t>(group) * sizeof(Group) +
                              static_cast<std::size_t>(i) * family.size;
          std::string section = file + family.name;
          if (family.count != 0) section += std::to_string(i / 10) + std::to_string(i % 10);
          for (const Field& field : family.fields) {
            const std::string value = field.kind == Kind::text
                                          ? std::string(text_at(field, entry))
                                          : std::to_string(number_at(field, entry));
            if (!value.empty() && value != "0")
              out.append(section).append(".").append(field.key).append("=").append(value).append(
                  "\n");
          }
        }
      }
    }
  }
  return out;
}

struct Input {
  int kind;
  std::string text;
  std::uint8_t group = 0;
};

/// Reads files one after the other as the only ones of a run.
std::string read(const std::vector<Input>& inputs) {
  const Folder folder(Folder::Files{});
  std::memset(&INI, 0, sizeof INI);
  actual_section = 255;
  for (const Input& input : inputs) {
    folder.write("x.ini", input.text);
    g_index = input.group;
    EXPECT_EQ(EncodeINIFile(input.kind, folder.path("x.ini").c_str()), 0);
  }
  return loaded();
}

struct Case {
  const char* name;
  std::vector<Input> files;
  const char* loaded;  // everything in the record that is not 0
};

Input system_file(const std::string& lines) { return {main_file, "[System]\n" + lines}; }

std::string padded(std::string line, std::size_t length) {
  line.resize(length, 'x');
  return line;
}

const Case cases[] = {
    {"nothing", {{main_file, ""}, {main_file, "; remark\n\n"}}, ""},
    {"quotes",
     {system_file("Name=\" a \" ; remark\nLocation= a ; remark\nContact=\"open \n")},
     "System.Name= a \nSystem.Location= a ; remark\nSystem.Contact=open \n"},
    {"a quote inside and an empty text",
     {system_file("Name=a\"b\nLocation=\"\"c\"\nContact=\"\nLanguage=\"3\"4\n")},
     "System.Name=a\nSystem.Language=3\n"},
    {"a value with an equals sign", {system_file("Name=a=b\n")}, "System.Name=a=b\n"},
    {"no line end",
     {system_file("Language=3\nName=attic")},
     "System.Name=attic\nSystem.Language=3\n"},
    {"CR LF",
     {{main_file, "[System]\r\nName=a\r\nLocation=\"b\"\r\nLanguage=3\r\n\r\n[Network]\r\nPort=4"}},
     "System.Name=a\r\nSystem.Location=b\nSystem.Language=3\nNetwork.Port=4\n"},
    {"NUL bytes",
     {{main_file,
       "[System]\0x\nName=a\0b\n\0Location=c\nCon\0tact=d\n[Net\0work]\nLanguage=3\0\n"s}},
     "System.Name=a\nSystem.Language=3\n"},
    {"lines that are skipped",
     {system_file(
         "\aName=a\n;Name=b\n Name=c\n\tName=d\nName\n=e\nName =f\nname=g\nNames=h\nNam=i\n"
         "\"Name\"=j\n [Network]\nLanguage=3\n")},
     "System.Language=3\n"},
    {"headers that are none",
     {system_file("[network]\n[Network\n[]\n[Network ]\n[ Network]\n[[Network]\n[UPS_0]\n[UPS_32]\n"
                  "[UPS_000]\n[Job_00]\nLanguage=3\n")},
     "System.Language=3\n"},
    {"a header with more behind it", {{main_file, "[Network]] x\nPort=5\n"}}, "Network.Port=5\n"},
    {"lines before the first header", {{main_file, "Name=a\nLanguage=3\n"}}, ""},
    {"a remark of 297 characters",
     {system_file(padded(";", 297) + "\nLanguage=3\n")},
     "System.Language=3\n"},
    {"a remark of 298 characters",
     {system_file(padded(";", 298) + "\nLanguage=3\n")},
     "System.Language=3\n"},
    {"a key in the second piece",
     {system_file(padded(";", 298) + "Language=3\n")},
     "System.Language=3\n"},
    {"a key across two pieces", {system_file(padded(";", 297) + "Language=3\n")}, ""},
    {"a header in the third piece",
     {system_file(padded(";", 596) + "[Network]\nPort=5\n")},
     "Network.Port=5\n"},
    {"a value across two pieces",
     {system_file(padded("Foo=", 290) + "Name=aLanguage=7\nEventLog=1")},
     "System.EventLog=1\n"},
    {"a number cut in two",
     {system_file("Language=" + std::string(288, ' ') + "12\n")},
     "System.Language=1\n"},
    {"a line of 20000 bytes",
     {system_file(padded("Name=", 20000) + "\nLanguage=3")},
     "System.Name=xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\nSystem.Language=3\n"},
    {"the last of equal keys",
     {{main_file, "[System]\nName=long\n[Network]\nPort=1\n[System]\nName=b\n"}},
     "System.Name=b\nNetwork.Port=1\n"},
    {"a section from the file before",
     {{main_file, "[Network]\nPort=1\n"}, {jobs_file, "Log=1\n"}, {sensor_file, "Name=a\n"}},
     "Network.Port=1\njobs Job_09.Log=1\nSensor_09.Name=a\n"},
    {"a section from the file before that is none here",
     {{main_file, "[VoiceConfig]\n"},
      {jobs_file, "Log=1\n"},
      {group_file, "Name=a\nType1=1\n"},
      {sensor_file, "Name=b\n"}},
     ""},
    {"a group file that begins with the last job",
     {{job_states_file, "[Job_29]\n"}, {group_file, "Name=7\nType1=8\n", 3}},
     "group 3 Event_27.Type1=7\n"},
    {"an event directly behind the common section",
     {{group_file, "[Common]\nName=a\n[Event_20]\nName=5\nType1=6\nUPSShutdownDelay=300\n", 1}},
     "group 1 Common.Name=a\ngroup 1 Event_20.Type1=5\ngroup 1 Event_20.Priority2=44\n"},
    {"an event directly behind the members",
     {{group_file, "[UPS]\nfoo=1\n[Event_16]\nUPS_03=9\nType1=6\n", 9}},
     "group 9 Event_16.Type4=9\n"},
    {"an early event without a line",
     {{group_file, "[Common]\n[Event_02]\nLog\n[Event_63]\nName=5\nLog=1\n"}},
     "group 0 Event_63.Type1=5\n"},
    {"a late event behind an early one, and behind a new file",
     {{group_file, "[Event_15]\nfoo=1\n[Event_63]\nType1=1\nMessage=m\n"},
      {group_file, "[Event_63]\nType1=1\nMessage=m\nName=2\n", 1}},
     "group 0 Event_63.Type1=1\ngroup 0 Event_63.Message=m\ngroup 1 Event_63.Type1=2\n"},
    {"sections without room",
     {{main_file,
       "[Serial_01]\nBits=1\n[Serial_07]\nDevice=a\n[Schedule_16]\nData=a\n[Schedule_19]\n"
       "Data=a\n[UPS_16]\nName=a\n[UPS_31]\nName=a\nSNMPSetComm=b\n[UPS_15]\nName=last\n"}},
     "UPS_15.Name=last\n"},
    {"a group without room", {{group_file, "[Common]\nName=a\n[Event_63]\nName=1\n", 10}}, ""},
    {"a WAP port of 0", {{main_file, "[WapConfig]\nPort=0\n"}}, "WapConfig.Port=9200\n"},
    {"a WAP port that is 0 in 16 bits",
     {{main_file, "[WapConfig]\nPort=65536\n"}},
     "WapConfig.Port=9200\n"},
    {"a WAP port that is no number",
     {{main_file, "[WapConfig]\nPort=x\n"}},
     "WapConfig.Port=9200\n"},
    {"a WAP port", {{main_file, "[WapConfig]\nPort=65537\n"}}, "WapConfig.Port=1\n"},
    {"WAP without a port", {{main_file, "[WapConfig]\nAllowed=2\n"}}, "WapConfig.Allowed=2\n"},
};

TEST(Reader, TakesWhatItUnderstands) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(read(c.files), c.loaded);
  }
}

TEST(Reader, ConvertsNumbersAsFarAsTheyGo) {
  struct Number {
    const char* text;
    unsigned wide;  // in 16 bits
    unsigned narrow;
  };
  const Number numbers[] = {
      {"0", 0, 0},
      {"12abc", 12, 12},
      {"abc", 0, 0},
      {"", 0, 0},
      {"  \t7 8", 7, 7},
      {"+5", 5, 5},
      {"--5", 0, 0},
      {"0x1F", 0, 0},
      {"1e3", 1, 1},
      {"\"12\"", 12, 12},
      {"300", 300, 44},
      {"-1", 65535, 255},
      {"-5", 65531, 251},
      {"65536", 0, 0},
      {"65795", 259, 3},
      {"4294967297", 1, 1},
      {"2147483648", 0, 0},
      {"9223372036854775807", 65535, 255},
      {"99999999999999999999", 65535, 255},
      {"-99999999999999999999", 0, 0},
  };
  for (const Number& n : numbers) {
    SCOPED_TRACE(n.text);
    const std::string text = n.text;
    read({system_file("DataLogMax=" + text), system_file("Language=" + text)});
    EXPECT_EQ(INI.system.DataLogMax, n.wide);
    EXPECT_EQ(INI.system.Language, n.narrow);
    read({{group_file, "[UPS]\nUPS_07=" + text, 9}, {group_file, "[Event_00]\nType6=" + text, 9}});
    EXPECT_EQ(INI.group[9].UPS[7], n.wide);
    EXPECT_EQ(INI.group[9].events[0].Type[5], n.narrow);
  }
}

TEST(Reader, ForcesTheShutdownSwitchOfSomeJobs) {
  std::string text;
  std::string jobs;
  std::string states;
  for (int i = 0; i < 30; ++i) {
    const std::string name = "Job_" + std::to_string(i / 10) + std::to_string(i % 10);
    text.append("[").append(name).append("]\nShutdown=257\nShutdownDelay=257\n");
    if (i % 2 == 0 && i != 2 && i != 4) jobs.append("jobs ").append(name).append(".Shutdown=1\n");
    jobs.append("jobs ").append(name).append(".ShutdownDelay=257\n");
    states.append("states ").append(name).append(".Shutdown=1\n");
    states.append("states ").append(name).append(".ShutdownDelay=257\n");
  }
  EXPECT_EQ(read({{jobs_file, text}}), jobs);
  EXPECT_EQ(read({{job_states_file, text}}), states);
}

TEST(Reader, LeavesTheSameBytesBehindAShorterText) {
  read({system_file("Name=b\n")});
  const Record expected = INI;
  read({system_file("Name=something longer than 32 characters\nName=b\n")});
  EXPECT_EQ(std::memcmp(&INI, &expected, sizeof INI), 0);
}

TEST(Reader, TakesNothingFromWhatItCannotRead) {
  const Folder folder(Folder::Files{});
  std::memset(&INI, 0, sizeof INI);
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
