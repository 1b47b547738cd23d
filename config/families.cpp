#include "config/families.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "config/events.h"

namespace {

/// A switch of a job or a condition of a group event: 16 bits wide, but a file fills only 8.
#define SWITCH(Entry, name) \
  Field { #name, Kind::low_u8, offsetof(Entry, name), sizeof(Entry::name) }

/// A value of section `System` that lies in the network block, right behind it in the record.
consteval Field kept_in_network(Field field) {
  field.offset += offsetof(Record, network) - offsetof(Record, system);
  return field;
}

constexpr Field system_fields[] = {
    FIELD(SystemBlock, Name),
    FIELD(SystemBlock, Location),
    FIELD(SystemBlock, Contact),
    FIELD(SystemBlock, Language),
    FIELD(SystemBlock, EventLog),
    FIELD(SystemBlock, DataLog),
    FIELD(SystemBlock, DataLogRate),
    FIELD(SystemBlock, DataLogMin),
    FIELD(SystemBlock, DataLogMax),
    FIELD(SystemBlock, SaveFiles),
    FIELD(SystemBlock, EnabledGroups),
    FIELD(SystemBlock, DeviceActions),
    FIELD(SystemBlock, LostCommRaiseAlarm),
    FIELD(SystemBlock, DisableShutdownForSingleUPS),
    FIELD(SystemBlock, AutoClose),
    FIELD(SystemBlock, DisableJobs),
    FIELD(SystemBlock, IgnoreRemoteUPSCommands),
    FIELD(SystemBlock, OEMMode),
    FIELD(SystemBlock, DebugMode),
    FIELD(SystemBlock, PasswordProtection),
    FIELD(SystemBlock, ShutdownType),
    FIELD(SystemBlock, HibernateSupport),
    FIELD(SystemBlock, DebugLog),
    FIELD(SystemBlock, DelayOfAlarm),
    kept_in_network(FIELD(NetworkBlock, DelayApplication)),
    kept_in_network(FIELD(NetworkBlock, Nodemon)),
};

constexpr Field serial_fields[] = {
    FIELD(Serial, Device), FIELD(Serial, Baudrate), FIELD(Serial, Bits),
    FIELD(Serial, Stop),   FIELD(Serial, Parity),   FIELD(Serial, CheckRate),
};

constexpr Field network_fields[] = {
    FIELD(NetworkBlock, CheckRate),
    FIELD(NetworkBlock, Server),
    FIELD(NetworkBlock, Port),
    FIELD(NetworkBlock, SNMP),
    FIELD(NetworkBlock, HTTP),
    FIELD(NetworkBlock, HTTPPath),
    FIELD(NetworkBlock, RemoteIPAddress),
    FIELD(NetworkBlock, RemoteDevice),
    FIELD(NetworkBlock, RemoteConnection),
    FIELD(NetworkBlock, RemoteAutoStart),
};

constexpr Field email_config_fields[] = {
    FIELD(EmailConfig, Allowed), FIELD(EmailConfig, Server),   FIELD(EmailConfig, Domain),
    FIELD(EmailConfig, Port),    FIELD(EmailConfig, Name),     FIELD(EmailConfig, Address),
    FIELD(EmailConfig, Timeout), FIELD(EmailConfig, Subject),  FIELD(EmailConfig, AuthAllowed),
    FIELD(EmailConfig, Login),   FIELD(EmailConfig, Password),
};

constexpr Field sms_config_fields[] = {
    FIELD(SMSConfig, Allowed),
    FIELD(SMSConfig, Port),
    FIELD(SMSConfig, SMSCentre),
    FIELD(SMSConfig, Type),
};

constexpr Field modem_config_fields[] = {
    FIELD(ModemConfig, Allowed),          FIELD(ModemConfig, Port),
    FIELD(ModemConfig, Number1),          FIELD(ModemConfig, Number2),
    FIELD(ModemConfig, Repeat),           FIELD(ModemConfig, Delay),
    FIELD(ModemConfig, InitString),       FIELD(ModemConfig, DialString),
    FIELD(ModemConfig, IncommingAllowed),
};

constexpr Field email_fields[] = {FIELD(Email, Name), FIELD(Email, EmailAddress)};
constexpr Field sms_fields[] = {FIELD(SMS, Name), FIELD(SMS, TelNumber)};
constexpr Field mess_fields[] = {FIELD(Mess, Name)};

// The decoded fields beside the code are made of it and never stored on their own.
constexpr Field schedule_fields[] = {
    {"Data", Kind::text, offsetof(ScheduleEntry, code), sizeof(ScheduleEntry::code)},
};

constexpr Field ups_fields[] = {
    FIELD(UPS, Name),
    FIELD(UPS, Type),
    FIELD(UPS, Serial),
    FIELD(UPS, Connection),
    FIELD(UPS, Port),
    FIELD(UPS, Address),
    FIELD(UPS, IPAddress),
    FIELD(UPS, Device),
    FIELD(UPS, Message),
    FIELD(UPS, MessageDelay),
    FIELD(UPS, MessageRate),
    FIELD(UPS, MessageType),
    FIELD(UPS, SystemShutdown),
    FIELD(UPS, SystemShutDelayAllow),
    FIELD(UPS, SystemShutLeadAllow),
    FIELD(UPS, SystemShutdownDelay),
    FIELD(UPS, SystemShutdownLead),
    FIELD(UPS, UPSShutdown),
    FIELD(UPS, UPSShutdownDelay),
    FIELD(UPS, UPSReboot),
    FIELD(UPS, Password),
    FIELD(UPS, HaveSensor),
    FIELD(UPS, RTGConnTime),
    FIELD(UPS, RTGTimeout),
    FIELD(UPS, SNMPGetComm),
    FIELD(UPS, SNMPSetComm),
};

constexpr Field mess_config_fields[] = {FIELD(MessConfig, Type)};

constexpr Field osprey_modem_fields[] = {
    FIELD(OspreyModemConfig, Port),       FIELD(OspreyModemConfig, Number),
    FIELD(OspreyModemConfig, DeviceNo),   FIELD(OspreyModemConfig, InitString),
    FIELD(OspreyModemConfig, DialString),
};

constexpr Field wap_fields[] = {FIELD(WapConfig, Allowed), FIELD(WapConfig, Port)};

constexpr Field fax_fields[] = {
    FIELD(FaxConfig, Allowed), FIELD(FaxConfig, LocalRemote), FIELD(FaxConfig, Fax),
    FIELD(FaxConfig, Name),    FIELD(FaxConfig, Company),     FIELD(FaxConfig, Number),
};

constexpr Field voice_fields[] = {
    FIELD(VoiceConfig, Allowed), FIELD(VoiceConfig, ModemID), FIELD(VoiceConfig, Delay),
    FIELD(VoiceConfig, Retry),   FIELD(VoiceConfig, Number),
};

constexpr Field job_fields[] = {
    SWITCH(Job, Log),
    FIELD(Job, LogDelay),
    SWITCH(Job, Execute),
    FIELD(Job, ExecuteDelay),
    FIELD(Job, ExecuteInterval),
    FIELD(Job, File),
    SWITCH(Job, LocalMessage),
    FIELD(Job, LocalMessageDelay),
    FIELD(Job, LocalMessageInterval),
    SWITCH(Job, NetMessage),
    FIELD(Job, NetMessageDelay),
    FIELD(Job, NetMessageInterval),
    SWITCH(Job, Shutdown),
    FIELD(Job, ShutdownDelay),
    SWITCH(Job, Email),
    FIELD(Job, EmailDelay),
    SWITCH(Job, SMS),
    FIELD(Job, SMSDelay),
    SWITCH(Job, Call),
    FIELD(Job, CallDelay),
    SWITCH(Job, Fax),
    FIELD(Job, FaxDelay),
    SWITCH(Job, Voice),
    FIELD(Job, VoiceDelay),
    FIELD(Job, Message),
};

constexpr Field common_fields[] = {
    FIELD(Group, Name),
    FIELD(Group, AllowedBatteryShutdown),
    FIELD(Group, AllowedSystemShutdown),
    FIELD(Group, AllowedUPSShutdown),
    FIELD(Group, AllowedUPSReboot),
    FIELD(Group, BatteryRuntimeShutdown),
    FIELD(Group, SystemShutdownDelay),
    FIELD(Group, UPSShutdownDelay),
    FIELD(Group, RedundancyLevel),
};

constexpr Field member_field(const char* key, std::uint32_t member) {
  return {key, Kind::u16, static_cast<std::uint32_t>(offsetof(Group, UPS)) + 2 * member, 2};
}

constexpr Field member_fields[] = {
    member_field("UPS_00", 0), member_field("UPS_01", 1), member_field("UPS_02", 2),
    member_field("UPS_03", 3), member_field("UPS_04", 4), member_field("UPS_05", 5),
    member_field("UPS_06", 6), member_field("UPS_07", 7),
};

/// Six conditions and their six sources, then the keys of a job.
constexpr auto event_fields = [] {
  constexpr const char* conditions[] = {
      "Type1",     "Type2",     "Type3",     "Type4",     "Type5",     "Type6",
      "Priority1", "Priority2", "Priority3", "Priority4", "Priority5", "Priority6",
  };
  std::array<Field, key_slots> fields{};
  std::uint32_t used = 0;
  for (const char* key : conditions) {
    fields[used] = {key, Kind::low_u8, 2 * used, 2};
    ++used;
  }
  for (Field field : job_fields) {
    field.offset += static_cast<std::uint32_t>(offsetof(GroupEvent, job));
    fields[used++] = field;
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
    FIELD(Sensor, DgInputNormalOpen),
    FIELD(Sensor, DgOutputEnableUps),
    FIELD(Sensor, DgOutputUps),
    FIELD(Sensor, DgOutputEnableSensor),
    FIELD(Sensor, DgOutputSensor),
};

constexpr std::uint16_t standard_wap_port = 9200;

/// Port 0 would leave WAP without a port; the service has never kept one.
void replace_zero_wap_port(void* entry, int, const Field& field) {
  auto& wap = *static_cast<WapConfig*>(entry);
  if (field.offset == offsetof(WapConfig, Port) && wap.Port == 0) wap.Port = standard_wap_port;
}

/// Whatever the file says, the switch of some events is off; `config/events.h` says why.
void forbid_shutdown(void* entry, int event, const Field&) {
  if (!events[event].keeps_shutdown) static_cast<Job*>(entry)->Shutdown = 0;
}

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
  if (wap.Port == 0) wap.Port = standard_wap_port;
}

#define BLOCK(member) offsetof(Record, member), sizeof(Record::member)
#define LIST(member) offsetof(Record, member), sizeof(*Record::member)

constexpr Family main_families[] = {
    {"System", 0, 1, false, system_fields, BLOCK(system)},
    {"Serial_", 8, serial_count, false, serial_fields, LIST(serial), nullptr, default_serial},
    {"Network", 0, 1, false, network_fields, BLOCK(network)},
    {"EmailConfig", 0, 1, false, email_config_fields, BLOCK(email_config), nullptr,
     default_email_config},
    {"SMSConfig", 0, 1, false, sms_config_fields, BLOCK(sms_config)},
    {"ModemConfig", 0, 1, false, modem_config_fields, BLOCK(modem_config)},
    {"Email_", 10, email_count, true, email_fields, LIST(email)},
    {"SMS_", 10, sms_count, true, sms_fields, LIST(sms)},
    {"Schedule_", 20, schedule_count, true, schedule_fields, LIST(schedule)},
    {"Mess_", 10, mess_count, true, mess_fields, LIST(mess)},
    {"UPS_", 32, ups_count, true, ups_fields, LIST(ups)},
    {"MessConfig", 0, 1, false, mess_config_fields, BLOCK(mess_config)},
    {"OspreyModemConfig", 0, 1, false, osprey_modem_fields, BLOCK(osprey_modem_config), nullptr,
     default_osprey_modem},
    {"WapConfig", 0, 1, false, wap_fields, BLOCK(wap_config), replace_zero_wap_port, default_wap},
    {"FaxConfig", 0, 1, false, fax_fields, BLOCK(fax_config)},
    {"VoiceConfig", 0, 1, false, voice_fields, BLOCK(voice_config)},
};

constexpr Family jobs_families[] = {
    {"Job_", 30, job_count, false, job_fields, LIST(job), forbid_shutdown},
};

constexpr Family job_states_families[] = {
    {"Job_", 30, job_count, false, job_fields, LIST(job_state)},
};

constexpr Family group_families[] = {
    {"Common", 0, 1, false, common_fields, LIST(group)},
    {"UPS", 0, 1, false, member_fields, LIST(group)},
    {"Event_", 64, event_count, true, event_fields,
     offsetof(Record, group) + offsetof(Group, events), sizeof(GroupEvent)},
};

constexpr Family sensor_families[] = {
    {"Sensor_", 32, sensor_count, false, sensor_fields, LIST(sensor)},
};

constexpr std::span<const Family> all_families[file_count] = {
    main_families, jobs_families, group_families, sensor_families, job_states_families,
};

template <std::size_t N>
constexpr void copy_name(char (&slot)[N], std::string_view name) {
  for (std::size_t i = 0; i < name.size(); ++i) slot[i] = name[i];
}

struct SectionTable {
  char names[file_count][section_slots][name_width] = {};
  std::uint8_t family[file_count][section_slots] = {};
  std::uint8_t index[file_count][section_slots] = {};
  int sections[file_count] = {};
};

constexpr SectionTable make_sections() {
  SectionTable table;
  for (int file = 0; file < file_count; ++file) {
    int section = 0;
    std::uint8_t row = 0;
    for (const Family& family : all_families[file]) {
      for (int i = 0; i < family.sections(); ++i, ++section) {
        auto& slot = table.names[file][section];
        const std::string_view name = family.name;
        copy_name(slot, name);
        if (family.count != 0) {
          slot[name.size()] = static_cast<char>('0' + i / 10);
          slot[name.size() + 1] = static_cast<char>('0' + i % 10);
        }
        table.family[file][section] = row;
        table.index[file][section] = static_cast<std::uint8_t>(i);
      }
      ++row;
    }
    table.sections[file] = section;
  }
  return table;
}

constexpr SectionTable sections = make_sections();

struct LineTable {
  char names[file_count][row_slots][key_slots][name_width] = {};
};

constexpr LineTable make_lines() {
  LineTable table;
  for (int file = 0; file < file_count; ++file) {
    int row = 0;
    for (const Family& family : all_families[file]) {
      int key = 0;
      for (const Field& field : family.fields) copy_name(table.names[file][row][key++], field.key);
      ++row;
    }
  }
  return table;
}

constexpr LineTable lines = make_lines();

}  // namespace

constexpr const char (&SectionNames)[file_count][section_slots][name_width] = sections.names;
constexpr const char (&LineNames)[file_count][row_slots][key_slots][name_width] = lines.names;

std::span<const Family> families_of(int file) { return all_families[file]; }

const Family* family_of(int file, int section, int& index) {
  if (file < 0 || file >= file_count || section < 0 || section >= sections.sections[file]) {
    return nullptr;
  }
  index = sections.index[file][section];
  return &all_families[file][sections.family[file][section]];
}
