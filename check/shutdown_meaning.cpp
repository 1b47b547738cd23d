#include "check/shutdown_meaning.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "check/in_use.h"
#include "check/program_file.h"
#include "check/schedule_meaning.h"
#include "tui/format.h"

namespace {

struct Setting {
  Entry entry;
  const char* key;
};

/// Whether an action of a schedule shuts the system down.
bool shuts_down(const ScheduleEntry& entry) {
  return is_schedule(entry) && !is_past(entry) &&
         (entry.action == system_shutdown || entry.action == operating_system_shutdown);
}

/// All settings that shut the system down.
std::vector<Setting> shutdowns() {
  std::vector<Setting> settings;
  const Source& main = source_of(main_file);
  for (int slot = 0; slot < ups_count; ++slot) {
    const UPS& ups = INI.ups[slot];
    const bool has_rule = ups.SystemShutDelayAllow != 0 || ups.SystemShutLeadAllow != 0;
    if (is_used_ups(slot) && ups.SystemShutdown != 0 && has_rule)
      settings.push_back({entry_of(main, "UPS_", slot), "SystemShutdown"});
  }
  for (const UsedJob& used : used_jobs()) {
    if (used.job.Shutdown != 0) settings.push_back({used.entry, "Shutdown"});
  }
  for (int i = 0; i < schedule_count; ++i) {
    if (shuts_down(INI.schedule[i])) settings.push_back({entry_of(main, "Schedule_", i), "Data"});
  }
  if (!groups_are_enabled()) return settings;
  for (const int i : used_groups()) {
    const Entry common = entry_of(source_of(group_file, i), "Common");
    const Group& group = INI.group[i];
    if (group.AllowedBatteryShutdown != 0) settings.push_back({common, "AllowedBatteryShutdown"});
    if (group.AllowedSystemShutdown != 0) settings.push_back({common, "AllowedSystemShutdown"});
  }
  return settings;
}

/// A program may do anything, a shutdown too.
bool runs_a_program() {
  const std::vector<UsedJob> jobs = used_jobs();
  return std::any_of(jobs.begin(), jobs.end(), [](const UsedJob& used) {
    return used.job.Execute != 0 && !used.job.File.empty();
  });
}

}  // namespace

void check_script() {
  if (!is_whole_folder()) return;
  const std::vector<Setting> settings = shutdowns();
  std::string fault = fault_of_script();
  if (settings.empty() || fault.empty()) return;
  if (settings.size() > 1) fault += format(" (needed %zu times)", settings.size());
  add_finding(Class::no_script, settings[0].entry, settings[0].key, {.other = fault});
}

void check_shutdown() {
  int used = 0;
  for (int slot = 0; slot < ups_count; ++slot) used += is_used_ups(slot) ? 1 : 0;
  if (used != 0 && shutdowns().empty() && !runs_a_program())
    add_finding(Class::no_shutdown, source_of(main_file).shown, 1);
}
