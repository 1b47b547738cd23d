#include "ups/ups_slot.h"

#include "config/record.h"

namespace {

/// Calls `visit` with every member of the groups in use: a slot plus one, 0 for none.
template <typename Visit>
void visit_members(Visit visit) {
  for (Group& group : INI1.group) {
    if (group.Name.empty()) continue;
    for (std::uint16_t& member : group.UPS) visit(member);
  }
}

}  // namespace

bool ups_in_use(int slot) { return slot >= 0 && slot < ups_count && !INI1.ups[slot].Name.empty(); }

int ups_used() {
  int used = 0;
  for (int slot = 0; slot < ups_count; ++slot) used += ups_in_use(slot) ? 1 : 0;
  return used;
}

bool ups_in_group(int slot) {
  bool found = false;
  visit_members([&](const std::uint16_t& member) { found |= member == slot + 1; });
  return found;
}

void fill_ups_defaults(int slot) {
  UPS& ups = INI1.ups[slot];
  ups.Type.assign("");
  ups.Serial.assign("");
  ups.Port.assign(INI1.serial[0].Device.view());
  ups.Address = 0;
  ups.IPAddress.assign("127.0.0.1");
  ups.Connection = serial_link;
  ups.Password = 0;
  ups.Device = 1;
  ups.Message = 1;
  ups.MessageDelay = 0;
  ups.MessageRate = 60;
  ups.MessageType = 0;
  ups.SystemShutdown = 1;
  ups.SystemShutDelayAllow = 1;
  ups.SystemShutLeadAllow = 0;
  ups.SystemShutdownDelay = 5;
  ups.SystemShutdownLead = 5;
  ups.UPSShutdown = 0;
  ups.UPSShutdownDelay = 5;
  ups.UPSReboot = 1;
}

void free_ups(int slot) {
  if (!ups_in_use(slot)) return;
  INI1.ups[slot].Name.assign("");
  visit_members([&](std::uint16_t& member) {
    if (member > slot + 1) --member;
  });
}
