#include "groups/group_param.h"

#include <string>

#include "groups/group_events.h"
#include "groups/group_members.h"
#include "groups/group_profiles.h"
#include "menus/screen_kit.h"

namespace {

constexpr unsigned largest = 65535;
constexpr int highest_level = 3;

Group& group_of(const Subject& s) { return INI1.group[s.index]; }

void* entry_of_group(const Subject& s) { return &group_of(s); }

bool exists(const Subject& s) { return !group_of(s).Name.empty(); }

bool battery_shutdown(const Subject& s) {
  return exists(s) && group_of(s).AllowedBatteryShutdown != 0;
}

bool system_shutdown(const Subject& s) {
  return exists(s) && group_of(s).AllowedSystemShutdown != 0;
}

bool ups_shutdown(const Subject& s) { return exists(s) && group_of(s).AllowedUPSShutdown != 0; }

/// Without its name the group counts as empty; the rest is cleared when the slot is opened again.
void delete_group(const Subject& s) {
  group_of(s).Name.assign("");
  group_of(s).AllowedUPSReboot = 0;
}

/// "N", or "N+" and how many UPSs there are to spare.
std::string redundancy(const Subject& s) {
  const int level = group_of(s).RedundancyLevel;
  return level == 0 ? "N" : format("N+%d", level);
}

void next_redundancy(const Subject& s) {
  std::uint8_t& level = group_of(s).RedundancyLevel;
  level = level < highest_level ? static_cast<std::uint8_t>(level + 1) : std::uint8_t{0};
}

const Row group_rows[] = {
    {.act = Act::open, .lead = "       1 - ", .label = text::delete_entry, .open = delete_group},
    {.act = Act::text,
     .lead = "       2 - ",
     .label = text::name,
     .field = FIELD(Group, Name),
     .colon = false},
    {.act = Act::custom,
     .lead = "       3 - ",
     .label = text::redundancy_level,
     .live = exists,
     .value = redundancy,
     .bracketed = true,
     .open = next_redundancy},
    {},
    {.act = Act::flag,
     .lead = "       4 - ",
     .label = text::battery_shutdown_allowed,
     .field = FIELD(Group, AllowedBatteryShutdown),
     .words = Words::on_off,
     .live = exists},
    {.act = Act::number,
     .lead = "           4.1 - ",
     .label = text::battery_runtime_limit,
     .field = FIELD(Group, BatteryRuntimeShutdown),
     .high = largest,
     .live = battery_shutdown},
    {.act = Act::flag,
     .lead = "       5 - ",
     .label = text::group_shutdown_allowed,
     .field = FIELD(Group, AllowedSystemShutdown),
     .words = Words::on_off,
     .live = exists},
    {.act = Act::number,
     .lead = "           5.1 - ",
     .label = text::group_shutdown_delay,
     .field = FIELD(Group, SystemShutdownDelay),
     .high = largest,
     .live = system_shutdown},
    {.act = Act::flag,
     .lead = "       6 - ",
     .label = text::group_ups_shutdown_allowed,
     .field = FIELD(Group, AllowedUPSShutdown),
     .words = Words::on_off,
     .live = exists},
    {.act = Act::number,
     .lead = "           6.1 - ",
     .label = text::group_ups_shutdown_delay,
     .field = FIELD(Group, UPSShutdownDelay),
     .high = largest,
     .live = ups_shutdown},
    {},
    {.act = Act::open,
     .lead = "       7 - ",
     .label = text::group_members,
     .live = exists,
     .open = [](const Subject& s) { gr_ups(s.index); }},
    {},
    {.act = Act::open,
     .lead = "       8 - ",
     .label = text::group_events,
     .live = exists,
     .open = [](const Subject& s) { gr_event(s.index); }},
    {.act = Act::open,
     .lead = "       9 - ",
     .label = text::load_profile,
     .live = exists,
     .open = [](const Subject& s) { load_profile(s.index); }},
    {.act = Act::open,
     .lead = "      10 - ",
     .label = text::save_profile,
     .live = exists,
     .open = [](const Subject& s) { save_profile(s.index); }},
    {},
    {.act = Act::back, .lead = "       0 - ", .label = text::back},
};

const Screen group_screen{.start_row = compact,
                          .title = text::group_title,
                          .rows = group_rows,
                          .entry = entry_of_group,
                          .arrow_column = 4};

}  // namespace

void print_group_param(int selected, int group) {
  print_screen(group_screen, {.index = group}, selected);
}

void group_param(int group) {
  const Subject subject{.index = group};
  if (!exists(subject)) {
    group_of(subject) = {};
    group_of(subject).AllowedUPSReboot = 1;
  }
  run_screen(group_screen, subject);
}
