// Loads the configuration of one folder, changes something in every file and saves it to another
// folder or the same: what the program does between start and exit, without its screens.

#include <cstdio>

#include "config/store.h"
#include "tui/diag.h"
#include "tui/terminal.h"

namespace {

/// Values and not steps, so that a second run changes nothing more. Of ten groups, one in the
/// middle and the last leave.
void change(Record& record) {
  record.system.Name.assign("changed");
  record.job[0].LogDelay = record.job_state[0].LogDelay = 4711;
  for (Group& group : record.group) {
    if (group.Name.view() == "leaves") group = {};
    if (!group.Name.empty()) group.UPSShutdownDelay = 4711;
  }
  record.sensor[0].Name.assign("changed");
}

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 3) return 2;
  std::snprintf(ProgramDir, sizeof ProgramDir, "%s/", argv[1]);
  if (LoadINI() != 0) return 2;
  change(INI1);
  copy_record(INI, INI1);
  std::snprintf(ProgramDir, sizeof ProgramDir, "%s/", argv[2]);
  const int error = SaveINI();
  flush();
  return error == 0 ? 0 : 1;
}
