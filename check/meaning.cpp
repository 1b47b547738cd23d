#include "check/meaning.h"

#include <algorithm>
#include <string>
#include <vector>

#include "check/action_meaning.h"
#include "check/in_use.h"
#include "check/schedule_meaning.h"
#include "check/shutdown_meaning.h"
#include "check/source.h"
#include "check/ups_meaning.h"

namespace {

/// The two bounds of the data log may be 0 as long as nobody has set them.
void check_log_bounds() {
  const SystemBlock& system = INI.system;
  if (system.DataLog == 0 || system.DataLogMin < system.DataLogMax || system.DataLogMin == 0)
    return;
  add_finding(
      Class::log_bounds, entry_of(source_of(main_file), "System"), "DataLogMin",
      {.before = std::to_string(system.DataLogMin), .other = std::to_string(system.DataLogMax)});
}

struct Check {
  void (*run)();
  std::vector<IniFile> needs;  // without these files nothing is certain
};

}  // namespace

void check_meaning() {
  // The checks of groups and jobs take what could be read.
  const Check checks[] = {
      {check_log_bounds, {main_file}},
      {check_type_codes, {main_file}},
      {check_connections, {main_file}},
      {check_leads, {main_file}},
      {check_schedules, {main_file}},
      {check_schedule_slots, {main_file}},
      {check_members, {main_file}},
      {check_sensors, {main_file, sensor_file}},
      {check_doubled_members, {}},
      {check_redundancy, {}},
      {check_programs, {}},
      {check_mail, {main_file}},
      {check_sms, {main_file}},
      {check_script, {main_file}},
      {check_shutdown, {main_file, jobs_file, group_file}},
  };
  for (const Check& check : checks) {
    if (std::all_of(check.needs.begin(), check.needs.end(), is_loaded)) check.run();
  }
}
