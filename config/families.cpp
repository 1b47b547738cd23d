#include "config/families.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string_view>
#include <type_traits>

#include "config/events.h"

namespace {

/// A member that no file holds, in the form of a row without a key.
#define UNSTORED(Entry, member) \
  Field { .offset = offsetof(Entry, member), .width = sizeof(Entry::member) }

template <typename T>
constexpr Field spare_of[1] = {UNSTORED(T, spare)};

/// Whether the rows of these tables, in any order, fill a `T` to its last byte and overlap nowhere.
/// So a member without a row does not compile.
template <typename T>
consteval bool fill(std::initializer_list<std::span<const Field>> tables) {
  std::size_t sum = 0;
  for (const auto& table : tables) {
    for (const Field& field : table) sum += field.width;
  }
  std::size_t filled = 0;
  for (std::size_t start = sizeof(T); start != filled;) {
    start = filled;
    for (const auto& table : tables) {
      for (const Field& field : table) {
        if (field.offset == start) filled += field.width;
      }
    }
  }
  // Row followed row up to the last byte. A row that overlaps them would make the sum larger.
  return filled == sizeof(T) && sum == sizeof(T);
}

// The two last keys of section `System` lie in the network block. So the rows of both tables count
// from the start of the record.
constexpr Field system_fields[] = {
    FIELD(Record, system.Name),
    FIELD(Record, system.Location),
    FIELD(Record, system.Contact),
    FIELD(Record, system.Language),
    on_off(FIELD(Record, system.EventLog)),
    on_off(FIELD(Record, system.DataLog)),
    FIELD(Record, system.DataLogRate),
    FIELD(Record, system.DataLogMin),
    FIELD(Record, system.DataLogMax),
    on_off(FIELD(Record, system.SaveFiles)),
    on_off(FIELD(Record, system.EnabledGroups)),
    on_off(FIELD(Record, system.DeviceActions)),
    on_off(FIELD(Record, system.LostCommRaiseAlarm)),
    on_off(FIELD(Record, system.DisableShutdownForSingleUPS)),
    on_off(FIELD(Record, system.AutoClose)),
    on_off(FIELD(Record, system.DisableJobs)),
    on_off(FIELD(Record, system.IgnoreRemoteUPSCommands)),
    on_off(FIELD(Record, system.OEMMode)),
    on_off(FIELD(Record, system.DebugMode)),
    FIELD(Record, system.PasswordProtection),
    FIELD(Record, system.ShutdownType),
    on_off(FIELD(Record, system.HibernateSupport)),
    on_off(FIELD(Record, system.DebugLog)),
    FIELD(Record, system.DelayOfAlarm),
    FIELD(Record, network.DelayApplication),
    on_off(FIELD(Record, network.Nodemon)),
};

constexpr Field network_fields[] = {
    FIELD(Record, network.CheckRate),
    on_off(FIELD(Record, network.Server)),
    FIELD(Record, network.Port),
    on_off(FIELD(Record, network.SNMP)),
    on_off(FIELD(Record, network.HTTP)),
    FIELD(Record, network.HTTPPath),
    FIELD(Record, network.RemoteIPAddress),
    FIELD(Record, network.RemoteDevice),
    FIELD(Record, network.RemoteConnection),
    FIELD(Record, network.RemoteAutoStart),
};

constexpr Field serial_fields[] = {
    FIELD(Serial, Device), FIELD(Serial, Baudrate), FIELD(Serial, Bits),
    FIELD(Serial, Stop),   FIELD(Serial, Parity),   FIELD(Serial, CheckRate),
};
static_assert(fill<Serial>({serial_fields}));

constexpr Field email_config_fields[] = {
    on_off(FIELD(EmailConfig, Allowed)),
    FIELD(EmailConfig, Server),
    FIELD(EmailConfig, Domain),
    FIELD(EmailConfig, Port),
    FIELD(EmailConfig, Name),
    FIELD(EmailConfig, Address),
    FIELD(EmailConfig, Timeout),
    FIELD(EmailConfig, Subject),
    on_off(FIELD(EmailConfig, AuthAllowed)),
    FIELD(EmailConfig, Login),
    FIELD(EmailConfig, Password),
};
static_assert(fill<EmailConfig>({email_config_fields, spare_of<EmailConfig>}));

constexpr Field sms_config_fields[] = {
    on_off(FIELD(SMSConfig, Allowed)),
    FIELD(SMSConfig, Port),
    FIELD(SMSConfig, SMSCentre),
    FIELD(SMSConfig, Type),
};
static_assert(fill<SMSConfig>({sms_config_fields}));

constexpr Field modem_config_fields[] = {
    on_off(FIELD(ModemConfig, Allowed)),
    FIELD(ModemConfig, Port),
    FIELD(ModemConfig, Number1),
    FIELD(ModemConfig, Number2),
    FIELD(ModemConfig, Repeat),
    FIELD(ModemConfig, Delay),
    FIELD(ModemConfig, InitString),
    FIELD(ModemConfig, DialString),
    on_off(FIELD(ModemConfig, IncommingAllowed)),
};
static_assert(fill<ModemConfig>({modem_config_fields}));

constexpr Field email_fields[] = {FIELD(Email, Name), FIELD(Email, EmailAddress)};
static_assert(fill<Email>({email_fields}));
constexpr Field sms_fields[] = {FIELD(SMS, Name), FIELD(SMS, TelNumber)};
static_assert(fill<SMS>({sms_fields}));
constexpr Field mess_fields[] = {FIELD(Mess, Name)};
static_assert(fill<Mess>({mess_fields}));

constexpr Field schedule_fields[] = {KEYED_FIELD(ScheduleEntry, code, "Data")};

/// Loading makes these from the code; no file knows `last`.
constexpr Field schedule_decoded[] = {
    UNSTORED(ScheduleEntry, time), UNSTORED(ScheduleEntry, ups), UNSTORED(ScheduleEntry, action),
    UNSTORED(ScheduleEntry, type), UNSTORED(ScheduleEntry, day), UNSTORED(ScheduleEntry, spare),
    UNSTORED(ScheduleEntry, last),
};
static_assert(fill<ScheduleEntry>({schedule_fields, schedule_decoded}));

constexpr Field ups_fields[] = {
    FIELD(UPS, Name),
    FIELD(UPS, Type),
    FIELD(UPS, Serial),
    FIELD(UPS, Connection),
    FIELD(UPS, Port),
    FIELD(UPS, Address),
    FIELD(UPS, IPAddress),
    FIELD(UPS, Device),
    on_off(FIELD(UPS, Message)),
    FIELD(UPS, MessageDelay),
    FIELD(UPS, MessageRate),
    FIELD(UPS, MessageType),
    on_off(FIELD(UPS, SystemShutdown)),
    on_off(FIELD(UPS, SystemShutDelayAllow)),
    on_off(FIELD(UPS, SystemShutLeadAllow)),
    FIELD(UPS, SystemShutdownDelay),
    FIELD(UPS, SystemShutdownLead),
    on_off(FIELD(UPS, UPSShutdown)),
    FIELD(UPS, UPSShutdownDelay),
    on_off(FIELD(UPS, UPSReboot)),
    FIELD(UPS, Password),
    on_off(FIELD(UPS, HaveSensor)),
    FIELD(UPS, RTGConnTime),
    FIELD(UPS, RTGTimeout),
    FIELD(UPS, SNMPGetComm),
    FIELD(UPS, SNMPSetComm),
};
static_assert(fill<UPS>({ups_fields}));

constexpr Field mess_config_fields[] = {FIELD(MessConfig, Type)};
static_assert(fill<MessConfig>({mess_config_fields, spare_of<MessConfig>}));

constexpr Field osprey_modem_fields[] = {
    FIELD(OspreyModemConfig, Port),       FIELD(OspreyModemConfig, Number),
    FIELD(OspreyModemConfig, DeviceNo),   FIELD(OspreyModemConfig, InitString),
    FIELD(OspreyModemConfig, DialString),
};
static_assert(fill<OspreyModemConfig>({osprey_modem_fields}));

constexpr Field wap_fields[] = {on_off(FIELD(WapConfig, Allowed)), FIELD(WapConfig, Port)};
static_assert(fill<WapConfig>({wap_fields, spare_of<WapConfig>}));

constexpr Field fax_fields[] = {
    on_off(FIELD(FaxConfig, Allowed)),
    FIELD(FaxConfig, LocalRemote),
    FIELD(FaxConfig, Fax),
    FIELD(FaxConfig, Name),
    FIELD(FaxConfig, Company),
    FIELD(FaxConfig, Number),
};
static_assert(fill<FaxConfig>({fax_fields}));

constexpr Field voice_fields[] = {
    on_off(FIELD(VoiceConfig, Allowed)), FIELD(VoiceConfig, ModemID), FIELD(VoiceConfig, Delay),
    FIELD(VoiceConfig, Retry),           FIELD(VoiceConfig, Number),
};
static_assert(fill<VoiceConfig>({voice_fields}));

constexpr Field job_fields[] = {
    on_off(low_byte(FIELD(Job, Log))),
    FIELD(Job, LogDelay),
    on_off(low_byte(FIELD(Job, Execute))),
    FIELD(Job, ExecuteDelay),
    FIELD(Job, ExecuteInterval),
    FIELD(Job, File),
    on_off(low_byte(FIELD(Job, LocalMessage))),
    FIELD(Job, LocalMessageDelay),
    FIELD(Job, LocalMessageInterval),
    on_off(low_byte(FIELD(Job, NetMessage))),
    FIELD(Job, NetMessageDelay),
    FIELD(Job, NetMessageInterval),
    on_off(low_byte(FIELD(Job, Shutdown))),
    FIELD(Job, ShutdownDelay),
    on_off(low_byte(FIELD(Job, Email))),
    FIELD(Job, EmailDelay),
    on_off(low_byte(FIELD(Job, SMS))),
    FIELD(Job, SMSDelay),
    on_off(low_byte(FIELD(Job, Call))),
    FIELD(Job, CallDelay),
    on_off(low_byte(FIELD(Job, Fax))),
    FIELD(Job, FaxDelay),
    on_off(low_byte(FIELD(Job, Voice))),
    FIELD(Job, VoiceDelay),
    FIELD(Job, Message),
};
static_assert(fill<Job>({job_fields}));

constexpr Field common_fields[] = {
    FIELD(Group, Name),
    on_off(FIELD(Group, AllowedBatteryShutdown)),
    on_off(FIELD(Group, AllowedSystemShutdown)),
    on_off(FIELD(Group, AllowedUPSShutdown)),
    on_off(FIELD(Group, AllowedUPSReboot)),
    FIELD(Group, BatteryRuntimeShutdown),
    FIELD(Group, SystemShutdownDelay),
    FIELD(Group, UPSShutdownDelay),
    FIELD(Group, RedundancyLevel),
};

constexpr Field member_fields[] = {
    KEYED_FIELD(Group, UPS[0], "UPS_00"), KEYED_FIELD(Group, UPS[1], "UPS_01"),
    KEYED_FIELD(Group, UPS[2], "UPS_02"), KEYED_FIELD(Group, UPS[3], "UPS_03"),
    KEYED_FIELD(Group, UPS[4], "UPS_04"), KEYED_FIELD(Group, UPS[5], "UPS_05"),
    KEYED_FIELD(Group, UPS[6], "UPS_06"), KEYED_FIELD(Group, UPS[7], "UPS_07"),
};

constexpr Field condition_fields[] = {
    low_byte(KEYED_FIELD(GroupEvent, Type[0], "Type1")),
    low_byte(KEYED_FIELD(GroupEvent, Type[1], "Type2")),
    low_byte(KEYED_FIELD(GroupEvent, Type[2], "Type3")),
    low_byte(KEYED_FIELD(GroupEvent, Type[3], "Type4")),
    low_byte(KEYED_FIELD(GroupEvent, Type[4], "Type5")),
    low_byte(KEYED_FIELD(GroupEvent, Type[5], "Type6")),
    low_byte(KEYED_FIELD(GroupEvent, Priority[0], "Priority1")),
    low_byte(KEYED_FIELD(GroupEvent, Priority[1], "Priority2")),
    low_byte(KEYED_FIELD(GroupEvent, Priority[2], "Priority3")),
    low_byte(KEYED_FIELD(GroupEvent, Priority[3], "Priority4")),
    low_byte(KEYED_FIELD(GroupEvent, Priority[4], "Priority5")),
    low_byte(KEYED_FIELD(GroupEvent, Priority[5], "Priority6")),
};

/// The conditions and their sources, then the keys of a job.
constexpr auto event_fields = [] {
  std::array<Field, std::size(condition_fields) + std::size(job_fields)> fields;
  auto* next = std::copy(std::begin(condition_fields), std::end(condition_fields), fields.begin());
  for (Field field : job_fields) {
    field.offset += static_cast<std::uint32_t>(offsetof(GroupEvent, job));
    *next++ = field;
  }
  return fields;
}();

constexpr Field sensor_fields[] = {
    FIELD(Sensor, Name),
    FIELD(Sensor, SensorType),
    FIELD(Sensor, IndexUPS),
    FIELD(Sensor, IndexSensor),
    FIELD(Sensor, HumThrUp),
    FIELD(Sensor, HumThrDown),
    FIELD(Sensor, TempThrUp),
    FIELD(Sensor, TempThrDown),
    on_off(FIELD(Sensor, DgInputNormalOpen)),
    on_off(FIELD(Sensor, DgOutputEnableUps)),
    FIELD(Sensor, DgOutputUps),
    on_off(FIELD(Sensor, DgOutputEnableSensor)),
    FIELD(Sensor, DgOutputSensor),
};
static_assert(fill<Sensor>({sensor_fields}));

void default_serial(void* entry) {
  auto& serial = *static_cast<Serial*>(entry);
  if (serial.Device.empty()) serial.Device.assign("AUTO");
}

void default_email_config(void* entry) {
  auto& mail = *static_cast<EmailConfig*>(entry);
  if (mail.Port == 0) mail.Port = 25;
  if (mail.Timeout == 0) mail.Timeout = 5;
}

void default_osprey_modem(void* entry) {
  auto& modem = *static_cast<OspreyModemConfig*>(entry);
  if (modem.DeviceNo == 0) modem.DeviceNo = 1;
}

void default_wap(void* entry) {
  auto& wap = *static_cast<WapConfig*>(entry);
  if (wap.Port == 0) wap.Port = 9200;
}

/// A port 0 in the file is replaced on loading already: it would leave WAP without a port.
void replace_zero_wap_port(void* entry, int, const Field& field) {
  if (field.offset == offsetof(WapConfig, Port)) default_wap(entry);
}

/// Whatever the file says, the switch of some events is off; `config/events.h` says why.
void forbid_shutdown(void* entry, int event, const Field&) {
  if (!events[event].keeps_shutdown) static_cast<Job*>(entry)->Shutdown = 0;
}

// The place of the entries of a family, and how many there are.
#define WHOLE_RECORD 0, sizeof(Record), 1
#define BLOCK(member) offsetof(Record, member), sizeof(Record::member), 1
#define LIST(member) \
  offsetof(Record, member), sizeof(*Record::member), std::extent_v<decltype(Record::member)>

constexpr Family main_families[] = {
    // name, numbered sections, only entries in use, rows, entries
    {"System", 0, false, system_fields, WHOLE_RECORD},
    {"Serial_", 8, false, serial_fields, LIST(serial), nullptr, default_serial},
    {"Network", 0, false, network_fields, WHOLE_RECORD},
    {"EmailConfig", 0, false, email_config_fields, BLOCK(email_config), nullptr,
     default_email_config},
    {"SMSConfig", 0, false, sms_config_fields, BLOCK(sms_config)},
    {"ModemConfig", 0, false, modem_config_fields, BLOCK(modem_config)},
    {"Email_", 10, true, email_fields, LIST(email)},
    {"SMS_", 10, true, sms_fields, LIST(sms)},
    {"Schedule_", 20, true, schedule_fields, LIST(schedule)},
    {"Mess_", 10, true, mess_fields, LIST(mess)},
    {"UPS_", 32, true, ups_fields, LIST(ups)},
    {"MessConfig", 0, false, mess_config_fields, BLOCK(mess_config)},
    {"OspreyModemConfig", 0, false, osprey_modem_fields, BLOCK(osprey_modem_config), nullptr,
     default_osprey_modem},
    {"WapConfig", 0, false, wap_fields, BLOCK(wap_config), replace_zero_wap_port, default_wap},
    {"FaxConfig", 0, false, fax_fields, BLOCK(fax_config)},
    {"VoiceConfig", 0, false, voice_fields, BLOCK(voice_config)},
};

constexpr Family jobs_families[] = {
    {"Job_", 30, false, job_fields, LIST(job), forbid_shutdown},
};

constexpr Family job_states_families[] = {
    {"Job_", 30, false, job_fields, LIST(job_state)},
};

constexpr Family group_families[] = {
    {"Common", 0, false, common_fields, BLOCK(group[0])},
    {"UPS", 0, false, member_fields, BLOCK(group[0])},
    {"Event_", 64, true, event_fields, LIST(group[0].events)},
};
constexpr Field events_of_group[] = {UNSTORED(Group, events)};
static_assert(fill<Group>({group_families[group_common].fields,
                           group_families[group_members].fields, events_of_group,
                           spare_of<Group>}));
static_assert(fill<GroupEvent>({group_families[group_events].fields}));

constexpr Family sensor_families[] = {
    {"Sensor_", 32, false, sensor_fields, LIST(sensor)},
};

constexpr std::span<const Family> all_families[file_count] = {
    main_families, jobs_families, group_families, sensor_families, job_states_families,
};

/// What the families fill in the record: the rows that count from its start, and the blocks of all
/// other families. The families of the group files share a block.
constexpr auto record_rows = [] {
  std::array<Field, section_slots> rows{};
  auto* next = rows.begin();
  *next++ = UNSTORED(Record, group);
  for (const int file : {main_file, jobs_file, sensor_file, job_states_file}) {
    for (const Family& family : all_families[file]) {
      if (family.size == sizeof(Record)) {
        next = std::copy(family.fields.begin(), family.fields.end(), next);
      } else {
        const auto width = family.size * static_cast<std::uint32_t>(family.stored);
        *next++ = {.offset = family.offset, .width = width};
      }
    }
  }
  return rows;
}();
static_assert(fill<Record>({record_rows, spare_of<Record>}));

struct Names {
  char sections[file_count][section_slots][name_width] = {};
  char keys[file_count][row_slots][key_slots][name_width] = {};
};

template <std::size_t N>
constexpr void copy_name(char (&slot)[N], std::string_view name) {
  for (std::size_t i = 0; i < name.size(); ++i) slot[i] = name[i];
}

constexpr Names names = [] {
  Names made;
  for (int file = 0; file < file_count; ++file) {
    int section = 0;
    int row = 0;
    for (const Family& family : all_families[file]) {
      int key = 0;
      for (const Field& field : family.fields) copy_name(made.keys[file][row][key++], field.key);
      const std::string_view name = family.name;
      for (int i = 0; i < family.sections(); ++i, ++section) {
        auto& slot = made.sections[file][section];
        copy_name(slot, name);
        if (family.count != 0) {
          slot[name.size()] = static_cast<char>('0' + i / 10);
          slot[name.size() + 1] = static_cast<char>('0' + i % 10);
        }
      }
      ++row;
    }
  }
  return made;
}();

/// The family of each section, by its place. The reader asks for every line.
struct PlaceOfSection {
  std::int16_t family = -1;  // none
  std::int16_t index = 0;
};

using PlacesOfFile = std::array<PlaceOfSection, section_slots>;

constexpr auto places = [] {
  std::array<PlacesOfFile, file_count> made;
  for (int file = 0; file < file_count; ++file) {
    auto* next = made[static_cast<std::size_t>(file)].begin();
    std::int16_t number = 0;
    for (const Family& family : all_families[file]) {
      for (int i = 0; i < family.sections(); ++i) *next++ = {number, static_cast<std::int16_t>(i)};
      ++number;
    }
  }
  return made;
}();

}  // namespace

constexpr const char (&SectionNames)[file_count][section_slots][name_width] = names.sections;
constexpr const char (&LineNames)[file_count][row_slots][key_slots][name_width] = names.keys;

std::span<const Family> families_of(int file) { return all_families[file]; }

const Family* family_of(int file, int section, int& index) {
  if (file < 0 || file >= file_count || section < 0) return nullptr;
  index = section;
  if (section >= section_slots) return nullptr;
  const PlaceOfSection place =
      places[static_cast<std::size_t>(file)][static_cast<std::size_t>(section)];
  if (place.family < 0) return nullptr;
  index = place.index;
  return &all_families[file][static_cast<std::size_t>(place.family)];
}
