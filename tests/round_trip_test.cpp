#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "config/ini_reader.h"
#include "config/store.h"
#include "tests/folder.h"
#include "tui/diag.h"

namespace {

using Files = Folder::Files;

int load(const Folder& folder) {
  std::snprintf(ProgramDir, sizeof ProgramDir, "%s/", folder.path().c_str());
  actual_section = 255;
  return LoadINI();
}

/// What a start of the program makes of these files when it saves them unchanged.
Files saved(const Files& files) {
  const Folder folder(files);
  EXPECT_EQ(load(folder), 0);
  EXPECT_EQ(SaveINI(), 0);
  return folder.files();
}

Files demo_files() { return Folder().files(); }

TEST(RoundTrip, KeepsTheDemoConfiguration) { EXPECT_EQ(saved(demo_files()), demo_files()); }

/// The sections of a file in the order of the writer, and their keys: `Name"32` is a text of 32
/// bytes, `Port:16` a number of 16 bits, `Log~` a switch, of which 8 bits are kept.
struct Section {
  const char* name;
  int count;  // 0 for a single section
  const char* keys;
};

const char* const job_keys =
    "Log~ LogDelay:16 Execute~ ExecuteDelay:16 ExecuteInterval:16 File\"260 LocalMessage~ "
    "LocalMessageDelay:16 LocalMessageInterval:16 NetMessage~ NetMessageDelay:16 "
    "NetMessageInterval:16 Shutdown~ ShutdownDelay:16 Email~ EmailDelay:16 SMS~ SMSDelay:16 Call~ "
    "CallDelay:16 Fax~ FaxDelay:16 Voice~ VoiceDelay:16 Message\"120";

const std::string event_keys =
    std::string(
        "Type1~ Type2~ Type3~ Type4~ Type5~ Type6~ Priority1~ Priority2~ Priority3~ "
        "Priority4~ Priority5~ Priority6~ ") +
    job_keys;

const std::vector<Section> main_sections = {
    {"System", 0,
     "Name\"32 Location\"32 Contact\"32 Language:8 EventLog:8 DataLog:16 DataLogRate:16 "
     "DataLogMin:16 DataLogMax:16 SaveFiles:8 EnabledGroups:8 DeviceActions:8 LostCommRaiseAlarm:8 "
     "DisableShutdownForSingleUPS:8 AutoClose:8 DisableJobs:8 IgnoreRemoteUPSCommands:8 OEMMode:8 "
     "DebugMode:8 PasswordProtection:16 ShutdownType:8 HibernateSupport:8 DebugLog:8 "
     "DelayOfAlarm:8 DelayApplication:8 Nodemon:8"},
    {"Serial_", 1, "Device\"24 Baudrate:16 Bits:8 Stop:8 Parity:8 CheckRate:8"},
    {"Network", 0,
     "CheckRate:8 Server:8 Port:16 SNMP:8 HTTP:8 HTTPPath\"256 RemoteIPAddress\"32 "
     "RemoteDevice:16 RemoteConnection:8 RemoteAutoStart:8"},
    {"EmailConfig", 0,
     "Allowed:8 Server\"32 Domain\"32 Port:16 Name\"32 Address\"80 Timeout:8 Subject\"128 "
     "AuthAllowed:8 Login\"64 Password\"64"},
    {"SMSConfig", 0, "Allowed:8 Port\"24 SMSCentre\"26 Type:8"},
    {"ModemConfig", 0,
     "Allowed:8 Port\"24 Number1\"26 Number2\"26 Repeat:8 Delay:8 InitString\"26 DialString\"26 "
     "IncommingAllowed:8"},
    {"Email_", 10, "Name\"32 EmailAddress\"80"},
    {"SMS_", 10, "Name\"32 TelNumber\"32"},
    {"Schedule_", 16, "Data#"},
    {"Mess_", 10, "Name\"50"},
    {"UPS_", 16,
     "Name\"20 Type\"20 Serial\"20 Connection:16 Port\"24 Address:8 IPAddress\"20 Device:16 "
     "Message:8 MessageDelay:8 MessageRate:16 MessageType:8 SystemShutdown:8 "
     "SystemShutDelayAllow:8 SystemShutLeadAllow:8 SystemShutdownDelay:16 SystemShutdownLead:16 "
     "UPSShutdown:8 UPSShutdownDelay:16 UPSReboot:8 Password:16 HaveSensor:8 RTGConnTime:16 "
     "RTGTimeout:16 SNMPGetComm\"32 SNMPSetComm\"32"},
    {"MessConfig", 0, "Type:8"},
    {"OspreyModemConfig", 0, "Port\"24 Number\"26 DeviceNo:16 InitString\"26 DialString\"26"},
    {"WapConfig", 0, "Allowed:8 Port:16"},
    {"FaxConfig", 0, "Allowed:8 LocalRemote:8 Fax\"128 Name\"32 Company\"32 Number\"26"},
    {"VoiceConfig", 0, "Allowed:8 ModemID:8 Delay:8 Retry:8 Number\"26"},
};
const std::vector<Section> jobs_sections = {{"Job_", 30, job_keys}};
const std::vector<Section> group_sections = {
    {"Common", 0,
     "Name\"32 AllowedBatteryShutdown:8 AllowedSystemShutdown:8 AllowedUPSShutdown:8 "
     "AllowedUPSReboot:8 BatteryRuntimeShutdown:16 SystemShutdownDelay:16 UPSShutdownDelay:16 "
     "RedundancyLevel:8"},
    {"UPS", 0, "UPS_00:16 UPS_01:16 UPS_02:16 UPS_03:16 UPS_04:16 UPS_05:16 UPS_06:16 UPS_07:16"},
    {"Event_", 64, event_keys.c_str()},
};
const std::vector<Section> sensor_sections = {
    {"Sensor_", 32,
     "Name\"32 SensorType:8 IndexUPS:8 IndexSensor:8 HumThrUp:8 HumThrDown:8 TempThrUp:16 "
     "TempThrDown:16 DgInputNormalOpen:8 DgOutputEnableUps:8 DgOutputUps:8 "
     "DgOutputEnableSensor:8 DgOutputSensor:8"},
};

/// A file with every key set to a value of its own that is too long or too large, and what the
/// writer makes of it.
struct Sample {
  std::string file =
      "; This is file with configuration parameters for KESTREL \n; Do not change any line !\n\n";
  std::string expected = file;

  Sample(const std::vector<Section>& sections, bool forces_shutdown = false) {
    unsigned number = 1001;
    for (const Section& section : sections) {
      for (int i = 0; i < (section.count == 0 ? 1 : section.count); ++i) {
        std::string header = std::string("[") + section.name;
        if (section.count != 0) header += std::to_string(i / 10) + std::to_string(i % 10);
        add(header + "]\n");
        std::istringstream keys(section.keys);
        for (std::string key; keys >> key; number += 2) {  // odd, so that no value becomes 0
          const bool never =
              forces_shutdown && key == "Shutdown~" && (i % 2 != 0 || i == 2 || i == 4);
          add_key(key, number, never);
        }
        add("\n");
      }
    }
  }

 private:
  void add(const std::string& text) {
    file += text;
    expected += text;
  }

  void add_key(const std::string& key, unsigned number, bool never) {
    const std::size_t type = key.find_first_of("\":~#");
    const std::string name = key.substr(0, type) + "=";
    const std::string own = std::to_string(number);
    if (key[type] == '"') {
      const std::size_t width = std::stoul(key.substr(type + 1));
      const std::string text = own + std::string(width - own.size(), '~');
      file += name + '"' + text + "+\"\n";
      expected += name + '"' + text + "\"\n";
    } else if (key[type] == '#') {
      char code[19];
      std::snprintf(code, sizeof code, "%014X0203", number * 256U + 1);
      add(name + '"' + code + "\"\n");
    } else {
      const unsigned range = key.ends_with(":16") ? 65536 : 256;
      file += name + std::to_string(number + 3 * 65536) + "\n";
      expected += name + std::to_string(never ? 0 : number % range) + "\n";
    }
  }
};

TEST(RoundTrip, CutsEveryKeyToItsWidthAndKeepsIt) {
  const Sample main(main_sections);
  const Sample jobs(jobs_sections, true);
  const Sample states(jobs_sections);
  const Sample group(group_sections);
  const Sample sensors(sensor_sections);
  Files files = {{"kestrel.ini", main.file}, {"jobs.ini", jobs.file}, {"jobsSTS.ini", states.file}};
  Files expected = {{"kestrel.ini", main.expected},
                    {"jobs.ini", jobs.expected},
                    {"jobsSTS.ini", states.expected}};
  files["sensor.ini"] = sensors.file;
  expected["sensor.ini"] = sensors.expected;
  for (int i = 0; i < 10; ++i) {
    files["group_0" + std::to_string(i) + ".ini"] = group.file;
    expected["group_0" + std::to_string(i) + ".ini"] = group.expected;
  }
  EXPECT_EQ(saved(files), expected);
  EXPECT_EQ(saved(expected), expected);
}

TEST(RoundTrip, SetsDefaultsAndClosesGaps) {
  const Files files = saved(
      {{"kestrel.ini",
        "[Email_03]\nName=\"mail\"\nEmailAddress=\"m@x\"\n[Email_05]\nEmailAddress=\"lost@x\"\n"
        "[SMS_09]\nName=\"sms\"\nTelNumber=\"+1\"\n[Schedule_07]\nData=4b3df1d00001040303\n"
        "[Schedule_08]\nData=4B3DF1D00001000303\n[Mess_01]\nName=\"mess\"\n"
        "[UPS_00]\nName=\"A\"\nPassword=65537\n[UPS_05]\nName=\"B\"\n[UPS_07]\nType=\"lost\"\n"
        "[UPS_09]\nName=\"C\"\n[UPS_20]\nName=\"D\"\n"},
       {"group_00.ini",
        "[Common]\nName=\"G\"\n[UPS]\nUPS_05=6\nUPS_07=2\n[Event_00]\nLog=1\n[Event_04]\nType1="
        "257\n"},
       {"sensor.ini", "[Sensor_07]\nName=\"S\"\nTempThrDown=-5\n"}});
  struct Value {
    const char* file;
    const char* section;
    const char* key;
    const char* value;
  };
  const Value values[] = {
      {"kestrel.ini", "Serial_00", "Device", "\"AUTO\""},
      {"kestrel.ini", "EmailConfig", "Port", "25"},
      {"kestrel.ini", "EmailConfig", "Timeout", "5"},
      {"kestrel.ini", "OspreyModemConfig", "DeviceNo", "1"},
      {"kestrel.ini", "WapConfig", "Port", "9200"},
      {"kestrel.ini", "Email_00", "EmailAddress", "\"m@x\""},
      {"kestrel.ini", "Email_01", "Name", ""},
      {"kestrel.ini", "SMS_00", "TelNumber", "\"+1\""},
      {"kestrel.ini", "Schedule_00", "Data", "\"4B3DF1D00001040303\""},
      {"kestrel.ini", "Schedule_01", "Data", ""},
      {"kestrel.ini", "Mess_00", "Name", "\"mess\""},
      {"kestrel.ini", "UPS_00", "Password", "1"},
      {"kestrel.ini", "UPS_01", "Name", "\"B\""},
      {"kestrel.ini", "UPS_02", "Name", "\"C\""},
      {"kestrel.ini", "UPS_03", "Name", ""},
      {"group_00.ini", "UPS", "UPS_00", "6"},
      {"group_00.ini", "UPS", "UPS_01", "2"},
      {"group_00.ini", "UPS", "UPS_02", ""},
      {"group_00.ini", "Event_00", "Type1", "1"},
      {"group_00.ini", "Event_00", "Log", "0"},
      {"group_00.ini", "Event_01", "Type1", ""},
      {"sensor.ini", "Sensor_07", "TempThrDown", "65531"},
      {"sensor.ini", "Sensor_31", "DgOutputSensor", "0"},
      {"jobs.ini", "Job_29", "Message", "\"\""},
  };
  for (const Value& v : values) {
    EXPECT_EQ(ini_value(files.at(v.file), v.section, v.key), v.value) << v.section << " " << v.key;
  }
  // In the record too, but in the loaded one alone.
  EXPECT_EQ(INI.serial[0].Device.view(), "AUTO");
  EXPECT_EQ(INI.email_config.Port, 25);
  EXPECT_EQ(INI.email_config.Timeout, 5);
  EXPECT_EQ(INI.osprey_modem_config.DeviceNo, 1);
  EXPECT_EQ(INI.wap_config.Port, 9200);
  EXPECT_TRUE(INI1.serial[0].Device.empty());
  EXPECT_EQ(INI1.wap_config.Port, 0);
}

TEST(RoundTrip, DeletesTheFileThatTheNextGroupWouldGet) {
  struct Case {
    const char* files;    // the numbers of the files that there are; group N is called "N"
    const char* removed;  // groups that the operator removes
    const char* after;    // number and name of each file then
  };
  const Case cases[] = {
      {"012", "1", "0=0 1=2 "},
      {"012", "", "0=0 1=1 2=2 "},
      {"02", "", "0=0 1=2 "},
      {"0", "0", ""},
      {"05", "05", "5=5 "},        // nothing deletes the second file
      {"19", "", "0=1 1=9 9=9 "},  // nor the last one
      {"0123456789", "49", "0=0 1=1 2=2 3=3 4=5 5=6 6=7 7=8 9=9 "},
      {"0123456789", "4", "0=0 1=1 2=2 3=3 4=5 5=6 6=7 7=8 8=9 9=9 "},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.files) + " without " + c.removed);
    Files files = {{"kestrel.ini", ""}};
    for (const char number : std::string(c.files)) {
      files[std::string("group_0") + number + ".ini"] = std::string("[Common]\nName=") + number;
    }
    const Folder folder(files);
    EXPECT_EQ(load(folder), 0);
    for (const char number : std::string(c.removed)) INI.group[number - '0'] = {};
    EXPECT_EQ(SaveINI(), 0);
    std::string after;
    for (const auto& [name, bytes] : folder.files()) {
      if (!name.starts_with("group_")) continue;
      std::string group = ini_value(bytes, "Common", "Name");
      std::erase(group, '"');
      after += name.substr(7, 1) + "=" + group + " ";
    }
    EXPECT_EQ(after, c.after);
  }
}

/// A file of pieces that make sense to the reader, in any order, with bytes that do not.
std::string hostile_file(std::mt19937& random) {
  std::vector<std::string> pieces = {"\n",  "\r\n", "\n\n", "=",  "=\"", "\"\n", "\"",  "[",
                                     "]\n", ";",    " ",    "\t", "\a",  "-7",   "300", "1"};
  for (const auto* sections : {&main_sections, &jobs_sections, &group_sections, &sensor_sections}) {
    for (const Section& section : *sections) {
      for (const char* number : {"", "00", "03", "15", "20"}) {
        pieces.push_back(std::string("\n[") + section.name + number + "]\n");
      }
      std::istringstream keys(section.keys);
      for (std::string key; keys >> key;) {
        pieces.push_back("\n" + key.substr(0, key.find_first_of("\":~#")) + "=");
      }
    }
  }
  std::string file;
  for (int i = 0; i < 600; ++i) {
    file += pieces[random() % pieces.size()];
    if (random() % 4 == 0) file += static_cast<char>(random() % 256);
    if (random() % 4 == 0) file += std::to_string(random() % 70000);
    if (random() % 40 == 0) file.append(random() % 400, static_cast<char>(random() % 256));
  }
  return file;
}

TEST(RoundTrip, IsTheSameTheSecondTimeForAnyFile) {
  std::mt19937 random(1);
  for (int i = 0; i < 40; ++i) {
    SCOPED_TRACE(i);
    Files files;
    for (const char* name :
         {"kestrel.ini", "jobs.ini", "jobsSTS.ini", "group_00.ini", "sensor.ini"}) {
      files[name] = hostile_file(random);
    }
    files["group_00.ini"] += "\n[Common]\nName=used\n";
    const Files once = saved(files);
    EXPECT_EQ(saved(once), once);
    if (HasFailure()) return;
  }
}

}  // namespace
