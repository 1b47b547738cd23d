#include "check/ups_meaning.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "check/in_use.h"
#include "check/moved_ups.h"
#include "check/schedule_meaning.h"
#include "tui/format.h"
#include "ups/type_code.h"

namespace {

constexpr int highest_redundancy = 3;  // that the menu offers

Entry entry_of_ups(int slot) { return entry_of(source_of(main_file), "UPS_", slot); }

Entry members_of(int group) { return entry_of(source_of(group_file, group), "UPS"); }

std::string member_key(int place) { return format("UPS_%02d", place); }

/// A slot that is not in use, or that does not exist.
std::string missing_ups(int slot) {
  return slot < ups_count ? format("UPS_%02d, which is not in use", slot)
                          : format("UPS_%02d, but UPS_%02d is the last", slot, ups_count - 1);
}

}  // namespace

// --- The UPSs ------------------------------------------------------------------------------------

void check_type_codes() {
  for (int slot = 0; slot < ups_count; ++slot) {
    const UPS& ups = INI.ups[slot];
    const std::string code(ups.Type.view());
    // A UPS of another maker has no type code, and RFC 1628 does not need one.
    const bool needs_none = code.empty() && ups.Connection == rfc1628_link;
    if (is_used_ups(slot) && !needs_none && FindUpsModelTxt(code.c_str()) == nullptr)
      add_finding(Class::type_code, entry_of_ups(slot), "Type", {.before = code});
  }
}

void check_connections() {
  struct Address {
    Link link;
    const char* who;
    const char* key;
  };
  constexpr Address addresses[] = {
      {serial_link, "on a serial line", "Port"},
      {snmp_link, "over SNMP", "IPAddress"},
      {tcp_ip_link, "over TCP/IP", "IPAddress"},
      {rfc1628_link, "after RFC 1628", "Port"},
  };
  for (int slot = 0; slot < ups_count; ++slot) {
    if (!is_used_ups(slot)) continue;
    const UPS& ups = INI.ups[slot];
    const auto* const address =
        std::find_if(std::begin(addresses), std::end(addresses),
                     [&ups](const Address& each) { return each.link == ups.Connection; });
    if (address == std::end(addresses)) {
      add_finding(Class::connection, entry_of_ups(slot), "Connection",
                  {.before = std::to_string(ups.Connection)});
      continue;
    }
    const std::string_view key = address->key;
    if (key == "Port" ? ups.Port.empty() : ups.IPAddress.empty())
      add_finding(Class::no_address, entry_of_ups(slot), key, {.other = address->who});
  }
}

void check_leads() {
  constexpr int seconds_per_minute = 60;
  for (int slot = 0; slot < ups_count; ++slot) {
    const UPS& ups = INI.ups[slot];
    const int least = ups.UPSShutdownDelay / seconds_per_minute;
    if (!is_used_ups(slot) || ups.UPSShutdown == 0 || ups.SystemShutdown == 0 ||
        ups.SystemShutLeadAllow == 0 || ups.SystemShutdownLead >= least) {
      continue;
    }
    add_finding(Class::short_lead, entry_of_ups(slot), "SystemShutdownLead",
                {.before = std::to_string(ups.SystemShutdownLead),
                 .after = std::to_string(least),
                 .other = std::to_string(ups.UPSShutdownDelay)});
  }
}

// --- References to a UPS -------------------------------------------------------------------------
// A reference to a free slot to which the next save moves a UPS has a finding of its own already.

void check_members() {
  for (const int group : used_groups()) {
    for (int place = 0; place < member_count; ++place) {
      const int member = INI.group[group].UPS[place];
      if (member == 0 || is_used_ups(member - 1) || changes_with_save(member - 1)) continue;
      add_finding(Class::free_slot, members_of(group), member_key(place),
                  {.before = std::to_string(member), .other = missing_ups(member - 1)});
    }
  }
}

void check_schedule_slots() {
  for (int i = 0; i < schedule_count; ++i) {
    const ScheduleEntry& entry = INI.schedule[i];
    if (!is_schedule(entry) || entry.action == operating_system_shutdown ||
        is_used_ups(entry.ups) || changes_with_save(entry.ups)) {
      continue;
    }
    add_finding(Class::free_slot, entry_of(source_of(main_file), "Schedule_", i), "Data",
                {.before = std::string(entry.code.view()), .other = missing_ups(entry.ups)});
  }
}

/// The service may count from 0 or from 1, so `IndexUPS` may mean either of two slots. 0 may also
/// mean none.
void check_sensors() {
  for (int i = 0; i < sensor_count; ++i) {
    const Sensor& sensor = INI.sensor[i];
    const int number = sensor.IndexUPS;
    if (sensor.Name.empty() || number == 0 || is_used_ups(number) || is_used_ups(number - 1) ||
        (changes_with_save(number) && changes_with_save(number - 1))) {
      continue;
    }
    add_finding(
        Class::free_slot, entry_of(source_of(sensor_file), "Sensor_", i), "IndexUPS",
        {.before = std::to_string(number),
         .other = format("UPS_%02d or UPS_%02d, neither of which is in use", number, number - 1)});
  }
}

// --- Groups --------------------------------------------------------------------------------------

void check_doubled_members() {
  for (const int group : used_groups()) {
    const auto& members = INI.group[group].UPS;
    for (int place = 0; place < member_count; ++place) {
      const auto* const here = members + place;
      const auto* const first = std::find(std::begin(members), here, *here);
      if (*here == 0 || first == here) continue;
      add_finding(Class::member_twice, members_of(group), member_key(place),
                  {.before = std::to_string(*here),
                   .other = member_key(static_cast<int>(first - std::begin(members)))});
    }
  }
}

void check_redundancy() {
  for (const int group : used_groups()) {
    const int level = INI.group[group].RedundancyLevel;
    const auto& members = INI.group[group].UPS;
    int count = 0;
    for (const auto* member = std::begin(members); member != std::end(members); ++member) {
      const bool counts = is_loaded(main_file) ? is_used_ups(*member - 1) : *member != 0;
      if (counts && std::find(std::begin(members), member, *member) == member) ++count;
    }
    const bool can_spare = level == 0 || level < count;
    if (can_spare && level <= highest_redundancy) continue;
    add_finding(
        Class::redundancy, entry_of(source_of(group_file, group), "Common"), "RedundancyLevel",
        {.before = std::to_string(level),
         .other = can_spare ? format("the menu knows 0 to %d", highest_redundancy)
                            : format("the group has %d UPS%s%s", count, count == 1 ? "" : "s",
                                     is_loaded(main_file) ? " in use" : "")});
  }
}
