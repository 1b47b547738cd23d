#pragma once

#include <cstdint>
#include <type_traits>

#include "config/text.h"

/// The configuration record: everything that the files of the Kestrel service hold, as one block
/// of plain bytes that is cleared, copied and compared whole. A field is spelled as its key in the
/// file, even where the key is misspelled. In every block the texts and the 16-bit numbers come
/// first, so that the compiler adds no padding; an odd byte at the end is a named `spare`. Flags
/// are 8-bit numbers, 0 or 1, unless a comment says otherwise. The order in the files is not the
/// order here but that of the tables in `config/families.cpp`. Every member has a row there.

constexpr int serial_count = 1;
constexpr int email_count = 10;
constexpr int sms_count = 10;
constexpr int mess_count = 10;
constexpr int schedule_count = 16;
constexpr int ups_count = 16;
constexpr int job_count = 30;
constexpr int group_count = 10;
constexpr int member_count = 8;
constexpr int event_count = 64;
constexpr int condition_count = 6;
constexpr int sensor_count = 32;

/// Section `System` without its two last keys, which lie in the network block.
struct SystemBlock {
  Text<32> Name;
  Text<32> Location;
  Text<32> Contact;
  std::uint16_t DataLog;  // a flag, 16 bits wide
  std::uint16_t DataLogRate;
  std::uint16_t DataLogMin;
  std::uint16_t DataLogMax;
  std::uint16_t PasswordProtection;  // `CalculatePassword` of the service password; 0: none
  std::uint8_t Language;             // NN of lang_NN.ini
  std::uint8_t EventLog;
  std::uint8_t SaveFiles;
  std::uint8_t EnabledGroups;
  std::uint8_t DeviceActions;
  std::uint8_t LostCommRaiseAlarm;
  std::uint8_t DisableShutdownForSingleUPS;
  std::uint8_t AutoClose;
  std::uint8_t DisableJobs;
  std::uint8_t IgnoreRemoteUPSCommands;
  std::uint8_t OEMMode;
  std::uint8_t DebugMode;
  std::uint8_t ShutdownType;
  std::uint8_t HibernateSupport;
  std::uint8_t DebugLog;
  std::uint8_t DelayOfAlarm;
};

/// Section `Network`, and the keys `DelayApplication` and `Nodemon` of section `System`.
struct NetworkBlock {
  Text<256> HTTPPath;
  Text<32> RemoteIPAddress;
  std::uint16_t Port;
  std::uint16_t RemoteDevice;
  std::uint8_t CheckRate;
  std::uint8_t Server;
  std::uint8_t SNMP;
  std::uint8_t HTTP;
  std::uint8_t RemoteConnection;
  std::uint8_t RemoteAutoStart;
  std::uint8_t DelayApplication;
  std::uint8_t Nodemon;
};

/// Section `Serial_00`: the serial port of the service.
struct Serial {
  Text<24> Device;
  std::uint16_t Baudrate;
  std::uint8_t Bits;
  std::uint8_t Stop;
  std::uint8_t Parity;
  std::uint8_t CheckRate;
};

struct Email {
  Text<32> Name;
  Text<80> EmailAddress;
};

struct SMS {
  Text<32> Name;
  Text<32> TelNumber;
};

struct Mess {
  Text<50> Name;
};

/// A timed action. `code` is its form in the file (key `Data`): 18 hexadecimal digits.
/// `DecodeSchedules` fills the other fields from them, and `EncodeSchedules` makes them anew.
struct ScheduleEntry {
  Text<20> code;
  std::int32_t time;    // seconds since 1970; repeating entries use its local hour and minute
  std::uint16_t ups;    // slot of the UPS, 0 to 15
  std::uint8_t action;  // 1 to 7, 0 for an empty entry
  std::uint8_t type;    // 1 once, 2 daily, 3 weekly, 4 monthly
  std::uint8_t day;     // weekly: 0 (Sunday) to 6; monthly: 1 to 31
  std::uint8_t spare[3];
  std::int32_t last;  // the minute in which the entry last fired; never stored in a file
};

/// How the service reaches a UPS: its `Connection`. A file may hold other numbers.
enum Link : std::uint16_t {
  serial_link = 0,
  snmp_link = 2,
  tcp_ip_link = 3,
  rfc1628_link = 5,  // SNMP after RFC 1628
};

/// A UPS slot, in use while `Name` is not empty.
struct UPS {
  Text<20> Name;
  Text<20> Type;
  Text<20> Serial;
  Text<24> Port;  // serial device; of an RFC 1628 link the address of its agent
  Text<20> IPAddress;
  Text<32> SNMPGetComm;
  Text<32> SNMPSetComm;
  std::uint16_t Connection;  // a `Link`
  std::uint16_t Device;      // network port
  std::uint16_t MessageRate;
  std::uint16_t SystemShutdownDelay;
  std::uint16_t SystemShutdownLead;  // minutes
  std::uint16_t UPSShutdownDelay;    // seconds
  std::uint16_t Password;            // `CalculatePassword` of the TCP/IP password; 0: none
  std::uint16_t RTGConnTime;
  std::uint16_t RTGTimeout;
  std::uint8_t Address;  // on the serial line
  std::uint8_t Message;
  std::uint8_t MessageDelay;
  std::uint8_t MessageType;
  std::uint8_t SystemShutdown;  // 1 while either of the next two is on
  std::uint8_t SystemShutDelayAllow;
  std::uint8_t SystemShutLeadAllow;
  std::uint8_t UPSShutdown;
  std::uint8_t UPSReboot;
  std::uint8_t HaveSensor;
};

/// What the service does about an event. The order is that of the group profile files, whose
/// records end with this block.
struct Job {
  std::uint16_t Log;
  std::uint16_t LogDelay;
  std::uint16_t Execute;
  std::uint16_t ExecuteDelay;
  std::uint16_t ExecuteInterval;
  Text<260> File;
  std::uint16_t LocalMessage;
  std::uint16_t LocalMessageDelay;
  std::uint16_t LocalMessageInterval;
  std::uint16_t NetMessage;
  std::uint16_t NetMessageDelay;
  std::uint16_t NetMessageInterval;
  std::uint16_t Shutdown;
  std::uint16_t ShutdownDelay;
  std::uint16_t Email;
  std::uint16_t EmailDelay;
  std::uint16_t SMS;
  std::uint16_t SMSDelay;
  std::uint16_t Call;
  std::uint16_t CallDelay;
  std::uint16_t Fax;
  std::uint16_t FaxDelay;
  std::uint16_t Voice;
  std::uint16_t VoiceDelay;
  Text<120> Message;
};

/// An event of a group, in use while `Type[0]` is not 0. Also the record of a profile file.
struct GroupEvent {
  std::uint16_t Type[condition_count];      // keys Type1 to Type6
  std::uint16_t Priority[condition_count];  // keys Priority1 to Priority6
  Job job;
};
static_assert(sizeof(Job) == 426 && sizeof(GroupEvent) == 450);

/// A UPS group, in use while `Name` is not empty.
struct Group {
  Text<32> Name;
  std::uint16_t UPS[member_count];  // slot of the member plus one, 0 for none
  std::uint16_t BatteryRuntimeShutdown;
  std::uint16_t SystemShutdownDelay;
  std::uint16_t UPSShutdownDelay;
  GroupEvent events[event_count];
  std::uint8_t AllowedBatteryShutdown;
  std::uint8_t AllowedSystemShutdown;
  std::uint8_t AllowedUPSShutdown;
  std::uint8_t AllowedUPSReboot;
  std::uint8_t RedundancyLevel;  // N plus 0 to 3
  std::uint8_t spare;
};

struct EmailConfig {
  Text<32> Server;
  Text<32> Domain;
  Text<32> Name;
  Text<80> Address;
  Text<128> Subject;
  Text<64> Login;
  Text<64> Password;  // plain text
  std::uint16_t Port;
  std::uint8_t Allowed;
  std::uint8_t Timeout;
  std::uint8_t AuthAllowed;
  std::uint8_t spare;
};

/// The GSM modem.
struct SMSConfig {
  Text<24> Port;
  Text<26> SMSCentre;
  std::uint8_t Allowed;
  std::uint8_t Type;  // 0 Siemens, 1 Falcom
};

/// The dial-up modem.
struct ModemConfig {
  Text<24> Port;
  Text<26> Number1;
  Text<26> Number2;
  Text<26> InitString;
  Text<26> DialString;
  std::uint8_t Allowed;
  std::uint8_t Repeat;
  std::uint8_t Delay;
  std::uint8_t IncommingAllowed;
};

struct MessConfig {
  std::uint8_t Type;
  std::uint8_t spare;
};

/// The modem through which the viewer is reached.
struct OspreyModemConfig {
  Text<24> Port;
  Text<26> Number;
  Text<26> InitString;
  Text<26> DialString;
  std::uint16_t DeviceNo;
};

struct WapConfig {
  std::uint16_t Port;
  std::uint8_t Allowed;
  std::uint8_t spare;
};

struct FaxConfig {
  Text<128> Fax;
  Text<32> Name;
  Text<32> Company;
  Text<26> Number;
  std::uint8_t Allowed;
  std::uint8_t LocalRemote;
};

struct VoiceConfig {
  Text<26> Number;
  std::uint8_t Allowed;
  std::uint8_t ModemID;
  std::uint8_t Delay;
  std::uint8_t Retry;
};

struct Sensor {
  Text<32> Name;
  std::uint16_t TempThrUp;
  std::uint16_t TempThrDown;
  std::uint8_t SensorType;
  std::uint8_t IndexUPS;
  std::uint8_t IndexSensor;
  std::uint8_t HumThrUp;
  std::uint8_t HumThrDown;
  std::uint8_t DgInputNormalOpen;
  std::uint8_t DgOutputEnableUps;
  std::uint8_t DgOutputUps;
  std::uint8_t DgOutputEnableSensor;
  std::uint8_t DgOutputSensor;
};

struct Record {
  ScheduleEntry schedule[schedule_count];
  SystemBlock system;
  NetworkBlock network;
  Serial serial[serial_count];
  Email email[email_count];
  SMS sms[sms_count];
  Mess mess[mess_count];
  UPS ups[ups_count];
  Job job[job_count];
  Job job_state[job_count];
  Group group[group_count];
  EmailConfig email_config;
  SMSConfig sms_config;
  ModemConfig modem_config;
  MessConfig mess_config;
  OspreyModemConfig osprey_modem_config;
  WapConfig wap_config;
  FaxConfig fax_config;
  VoiceConfig voice_config;
  Sensor sensor[sensor_count];
  std::uint8_t spare[2];
};
static_assert(std::is_trivially_copyable_v<Record> && std::is_standard_layout_v<Record>);
static_assert(std::has_unique_object_representations_v<Record>);  // no padding to compare

/// The configuration as loaded, and as written back. `LoadINI` fills it. At the exit question `run`
/// copies `INI1` over it. `SaveINI` adds the codes of the schedules and the defaults of empty
/// values. The choice of a language at the start stores `Language` here.
extern Record INI;

/// The working copy. `LoadINI`, and `run` before the menus, copy `INI` over it. After that only the
/// screens change it.
extern Record INI1;
