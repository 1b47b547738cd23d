#include "ups/ups_param.h"

#include "lang/lang_text.h"
#include "menus/screen_kit.h"
#include "tui/columns.h"
#include "ups/type_code.h"
#include "ups/ups_connection.h"
#include "ups/ups_line.h"

namespace {

constexpr int leave = 0;
constexpr unsigned largest = 65535;
constexpr unsigned seconds_per_minute = 60;

UPS& ups_of(const Subject& s) { return INI1.ups[s.index]; }

// --- Name ---------------------------------------------------------------------------------------

/// What a free slot becomes when it gets a name. The sensor, the two times and the SNMP communities
/// stay what they were.
void fill_defaults(UPS& ups) {
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

/// Calls `visit` with every member reference of the groups in use: a slot plus one, 0 for none.
template <typename Visit>
void visit_members(Visit visit) {
  for (Group& group : INI1.group) {
    if (group.Name.empty()) continue;
    for (std::uint16_t& member : group.UPS) visit(member);
  }
}

/// Frees a slot; returns the item of the arrow then. A slot that is free already only leaves the
/// screen: no other UPS moves down, so no group may be renumbered.
int delete_ups(int slot, int item) {
  if (!ups_in_use(slot)) return leave;
  bool in_group = false;
  visit_members([&](const std::uint16_t& member) { in_group |= member == slot + 1; });
  if (in_group) {
    show_refusal(text::ups_in_group);
    return item;
  }
  INI1.ups[slot].Name.assign("");
  // Saving numbers the UPSs without gaps: those behind this one move down by one slot then, and
  // their groups refer to the new numbers already now.
  visit_members([&](std::uint16_t& member) {
    if (member > slot + 1) --member;
  });
  return leave;
}

int edit_name(const Subject& s, int item) {
  char typed[120] = {};
  UPS& ups = ups_of(s);
  begin_name_entry(text::ups_name, ups.Name.view(), text::delete_ups_hint);
  ask_line(typed, sizeof typed, LangText[text::new_value]);
  if (typed[0] == '*') return delete_ups(s.index, item);
  if (typed[0] == '\0') return item;
  if (ups.Name.empty()) fill_defaults(ups);
  ups.Name.assign(cut_bytes(typed, sizeof ups.Name.bytes));
  return item;
}

std::string shown_name(const Subject& s) {
  return ups_in_use(s.index) ? std::string(ups_of(s).Name.view()) : LangText[text::unused];
}

// --- Type code ----------------------------------------------------------------------------------

/// Asks until the code decodes, so that this screen never leaves an unknown one behind. Enter alone
/// ends it only where the present code decodes.
void edit_type_code(const Subject& s) {
  Text<20>& type = ups_of(s).Type;
  for (;;) {
    begin_entry(text::type_code, ups_model(s.index));
    ask_line(type.bytes, sizeof type.bytes, LangText[text::new_value]);
    if (FindUpsModelTxt(std::string(type.view()).c_str()) != nullptr) return;
    show_refusal(text::unknown_model);
  }
}

// --- Shutdown -----------------------------------------------------------------------------------

// A rule counts as on by its own flag for the arrow and for what depends on it. It is shown as on
// only while `SystemShutdown`, which the service asks first, is on as well.

bool delay_rule(const Subject& s) { return ups_of(s).SystemShutDelayAllow != 0; }
bool lead_rule(const Subject& s) { return ups_of(s).SystemShutLeadAllow != 0; }
bool ups_shutdown(const Subject& s) { return ups_of(s).UPSShutdown != 0; }

bool delay_rule_shown(const Subject& s) { return ups_of(s).SystemShutdown != 0 && delay_rule(s); }
bool lead_rule_shown(const Subject& s) { return ups_of(s).SystemShutdown != 0 && lead_rule(s); }

/// `SystemShutdown` goes on with either rule, and off with the last one.
void toggle_rule(UPS& ups, std::uint8_t& rule, std::uint8_t other_rule) {
  rule = rule == 0 ? 1 : 0;
  if (rule != 0)
    ups.SystemShutdown = 1;
  else if (other_rule == 0)
    ups.SystemShutdown = 0;
}

void toggle_delay_rule(const Subject& s) {
  UPS& ups = ups_of(s);
  toggle_rule(ups, ups.SystemShutDelayAllow, ups.SystemShutLeadAllow);
}

void toggle_lead_rule(const Subject& s) {
  UPS& ups = ups_of(s);
  toggle_rule(ups, ups.SystemShutLeadAllow, ups.SystemShutDelayAllow);
}

/// The computer has to be down before the UPS is. The lead is in whole minutes and rounded down, so
/// it may still be the shorter time by seconds.
void correct_lead(UPS& ups) {
  if (ups.SystemShutdownLead * seconds_per_minute >= ups.UPSShutdownDelay) return;
  show_refusal(text::lead_corrected);
  ups.SystemShutdownLead = static_cast<std::uint16_t>(ups.UPSShutdownDelay / seconds_per_minute);
}

// The two edits that can make the lead too short ask different switches on purpose: a new lead
// matters where the UPS is shut down, a new delay of the UPS where the lead is used.

void settle_lead(const Subject& s) {
  if (ups_shutdown(s)) correct_lead(ups_of(s));
}

void settle_ups_delay(const Subject& s) {
  if (lead_rule(s)) correct_lead(ups_of(s));
}

// --- Screen -------------------------------------------------------------------------------------

/// Without a name there are only the name, a rule line and the way back.
bool named(const Subject& s) { return ups_in_use(s.index); }

const Row ups_rows[] = {
    {.act = Act::custom,
     .lead = "      1 - ",
     .label = text::ups_name,
     .value = shown_name,
     .enter = edit_name},
    {.act = Act::custom,
     .lead = "      2 - ",
     .label = text::type_code,
     .present = named,
     .value = [](const Subject& s) { return ups_model(s.index); },
     .open = edit_type_code},
    {.act = Act::text,
     .lead = "      3 - ",
     .label = text::serial_number,
     .field = FIELD(UPS, Serial),
     .present = named},
    {.act = Act::open,
     .lead = "      4 - ",
     .label = text::connection,
     .present = named,
     .open = [](const Subject& s) { ups_conn_param(s.index); }},
    {.present = named},
    {.act = Act::flag,
     .lead = "      5 - ",
     .label = text::system_shutdown_rule,
     .words = Words::on_off,
     .present = named,
     .is_on = delay_rule_shown,
     .toggle = toggle_delay_rule},
    {.act = Act::number,
     .lead = "          5.1 - ",
     .label = text::shutdown_delay,
     .field = FIELD(UPS, SystemShutdownDelay),
     .high = largest,
     .present = named,
     .live = delay_rule,
     .shown = delay_rule_shown},
    {.present = named},
    {.act = Act::flag,
     .lead = "      6 - ",
     .label = text::system_shutdown_rule,
     .words = Words::on_off,
     .present = named,
     .is_on = lead_rule_shown,
     .toggle = toggle_lead_rule},
    {.act = Act::number,
     .lead = "          6.1 - ",
     .label = text::shutdown_lead,
     .field = FIELD(UPS, SystemShutdownLead),
     .high = largest,
     .present = named,
     .live = lead_rule,
     .shown = lead_rule_shown,
     .settle = settle_lead},
    {.present = named},
    {.act = Act::flag,
     .lead = "      7 - ",
     .label = text::ups_shutdown_allowed,
     .field = FIELD(UPS, UPSShutdown),
     .words = Words::on_off,
     .present = named},
    {.act = Act::number,
     .lead = "          7.1 - ",
     .label = text::ups_shutdown_delay,
     .field = FIELD(UPS, UPSShutdownDelay),
     .high = largest,
     .present = named,
     .live = ups_shutdown,
     .settle = settle_ups_delay},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen ups_screen{.start_row = 0,
                        .title = text::ups_parameters,
                        .rows = ups_rows,
                        .entry = [](const Subject& s) -> void* { return &ups_of(s); }};

}  // namespace

void print_ups_param(int selected, int slot) {
  print_screen(ups_screen, {.index = slot}, selected);
}

void ups_param(int slot) { run_screen(ups_screen, {.index = slot}); }
