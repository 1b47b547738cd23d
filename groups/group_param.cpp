#include "groups/group_param.h"

#include <string>

#include "groups/group_events.h"
#include "groups/group_members.h"
#include "groups/group_profiles.h"
#include "kit/screens.h"
#include "tui/format.h"

namespace {

constexpr unsigned largest = 65535;
constexpr int highest_level = 3;

Group& group_of(const Subject& s) { return INI1.group[s.group]; }

void* entry_of_group(const Subject& s) { return &group_of(s); }

bool exists(const Subject& s) { return !group_of(s).Name.empty(); }

bool battery_shutdown(const Subject& s) {
  return exists(s) && group_of(s).AllowedBatteryShutdown != 0;
}

bool system_shutdown(const Subject& s) {
  return exists(s) && group_of(s).AllowedSystemShutdown != 0;
}

bool ups_shutdown(const Subject& s) { return exists(s) && group_of(s).AllowedUPSShutdown != 0; }

/// A group without a name counts as empty. Opening the slot again clears the rest.
void delete_group(const Subject& s) {
  group_of(s).Name.assign("");
  group_of(s).AllowedUPSReboot = 0;
}

/// "N", or "N+" and the number of UPSs that may fail.
std::string redundancy(const Subject& s) {
  const int level = group_of(s).RedundancyLevel;
  return level == 0 ? "N" : format("N+%d", level);
}

void next_redundancy(const Subject& s) {
  std::uint8_t& level = group_of(s).RedundancyLevel;
  level = level < highest_level ? static_cast<std::uint8_t>(level + 1) : std::uint8_t{0};
}

constexpr Row group_rows[] = {
    open("1", text::delete_entry, delete_group),
    words("2", text::name, FIELD(Group, Name)).without_colon(),
    custom("3", text::redundancy_level, redundancy, next_redundancy).in_brackets().live_if(exists),
    rule,
    flag("4", text::battery_shutdown_allowed, FIELD(Group, AllowedBatteryShutdown))
        .on_off()
        .live_if(exists),
    number("4.1", text::battery_runtime_limit, FIELD(Group, BatteryRuntimeShutdown), 0, largest)
        .live_if(battery_shutdown),
    flag("5", text::group_shutdown_allowed, FIELD(Group, AllowedSystemShutdown))
        .on_off()
        .live_if(exists),
    number("5.1", text::group_shutdown_delay, FIELD(Group, SystemShutdownDelay), 0, largest)
        .live_if(system_shutdown),
    flag("6", text::group_ups_shutdown_allowed, FIELD(Group, AllowedUPSShutdown))
        .on_off()
        .live_if(exists),
    number("6.1", text::group_ups_shutdown_delay, FIELD(Group, UPSShutdownDelay), 0, largest)
        .live_if(ups_shutdown),
    rule,
    open("7", text::group_members, opens<gr_ups, &Subject::group>).live_if(exists),
    rule,
    open("8", text::group_events, opens<gr_event, &Subject::group>).live_if(exists),
    open("9", text::load_profile, opens<load_profile, &Subject::group>).live_if(exists),
    open("10", text::save_profile, opens<save_profile, &Subject::group>).live_if(exists),
    rule,
    back,
};

constexpr Screen group_screen{.start_row = compact,
                              .title = text::group_title,
                              .rows = group_rows,
                              .entry = entry_of_group,
                              .arrow_column = 4};

}  // namespace

void print_group_param(int selected, int group) {
  print_screen(group_screen, {.group = group}, selected);
}

void group_param(int group) {
  const Subject subject{.group = group};
  if (!exists(subject)) {
    group_of(subject) = {};
    group_of(subject).AllowedUPSReboot = 1;
  }
  run_screen(group_screen, subject);
}
