#include "ups/ups_param.h"

#include "kit/screens.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "tui/columns.h"
#include "ups/type_code.h"
#include "ups/ups_connection.h"
#include "ups/ups_line.h"
#include "ups/ups_slot.h"

namespace {

constexpr int leave = 0;
constexpr unsigned largest = 65535;
constexpr unsigned seconds_per_minute = 60;

UPS& ups_of(const Subject& s) { return INI1.ups[s.ups]; }

void* entry_of_ups(const Subject& s) { return &ups_of(s); }

// --- Name ---------------------------------------------------------------------------------------

/// "*" frees the slot and leaves the screen, unless a group uses the UPS.
int edit_name(const Subject& s, int item) {
  char typed[120] = {};
  Text<20>& name = ups_of(s).Name;
  ask_name(text::ups_name, name.view(), text::delete_ups_hint, typed, sizeof typed);
  if (typed[0] == '\0') return item;
  if (typed[0] == '*') {
    const bool frees = !ups_in_use(s.ups) || !ups_in_group(s.ups);
    frees ? free_ups(s.ups) : show_refusal(text::ups_in_group);
    return frees ? leave : item;
  }
  if (name.empty()) fill_ups_defaults(s.ups);
  name.assign(cut_bytes(typed, sizeof name.bytes));
  return item;
}

std::string shown_name(const Subject& s) {
  return ups_in_use(s.ups) ? std::string(ups_of(s).Name.view()) : shown_text(text::unused);
}

// --- Type code ----------------------------------------------------------------------------------

std::string model(const Subject& s) { return ups_model(s.ups); }

/// Asks until the code decodes, so this screen never leaves an unknown code in the record. Enter
/// alone ends the question only if the present code decodes.
void edit_type_code(const Subject& s) {
  Text<20>& type = ups_of(s).Type;
  for (;;) {
    ask_text(text::type_code, model(s), type.bytes, sizeof type.bytes);
    if (FindUpsModelTxt(std::string(type.view()).c_str()) != nullptr) return;
    show_refusal(text::unknown_model);
  }
}

// --- Shutdown -----------------------------------------------------------------------------------

// The arrow and the sub-items follow the rule's own flag. The screen shows the rule as on only
// while `SystemShutdown` is on as well, because the service looks at that first.

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

/// The computer has to be down before the UPS. The lead is in whole minutes, rounded down, so it
/// may still be some seconds shorter than the delay.
void correct_lead(UPS& ups) {
  if (ups.SystemShutdownLead * seconds_per_minute >= ups.UPSShutdownDelay) return;
  show_refusal(text::lead_corrected);
  ups.SystemShutdownLead = static_cast<std::uint16_t>(ups.UPSShutdownDelay / seconds_per_minute);
}

// Two edits can make the lead too short. They look at different switches on purpose: a new lead
// matters if the UPS is shut down, a new delay of the UPS matters if the lead is used.

void settle_lead(const Subject& s) {
  if (ups_shutdown(s)) correct_lead(ups_of(s));
}

void settle_ups_delay(const Subject& s) {
  if (lead_rule(s)) correct_lead(ups_of(s));
}

// --- Screen -------------------------------------------------------------------------------------

constexpr Row ups_rows[] = {
    custom("1", text::ups_name, shown_name, edit_name),
    custom("2", text::type_code, model, edit_type_code),
    words("3", text::serial_number, FIELD(UPS, Serial)),
    open("4", text::connection, opens<ups_conn_param, &Subject::ups>),
    rule,
    flag("5", text::system_shutdown_rule, delay_rule_shown, toggle_delay_rule).on_off(),
    number("5.1", text::shutdown_delay, FIELD(UPS, SystemShutdownDelay), 0, largest)
        .live_if(delay_rule)
        .shown_if(delay_rule_shown),
    rule,
    flag("6", text::system_shutdown_rule, lead_rule_shown, toggle_lead_rule).on_off(),
    number("6.1", text::shutdown_lead, FIELD(UPS, SystemShutdownLead), 0, largest)
        .live_if(lead_rule)
        .shown_if(lead_rule_shown)
        .then(settle_lead),
    rule,
    flag("7", text::ups_shutdown_allowed, FIELD(UPS, UPSShutdown)).on_off(),
    number("7.1", text::ups_shutdown_delay, FIELD(UPS, UPSShutdownDelay), 0, largest)
        .live_if(ups_shutdown)
        .then(settle_ups_delay),
    rule,
    back,
};

constexpr Row free_slot_rows[] = {
    custom("1", text::ups_name, shown_name, edit_name),
    rule,
    back,
};

std::span<const Row> rows_of_slot(const Subject& s) {
  if (ups_in_use(s.ups)) return ups_rows;
  return free_slot_rows;
}

constexpr Screen ups_screen{
    .start_row = 0, .title = text::ups_parameters, .rows_of = rows_of_slot, .entry = entry_of_ups};

}  // namespace

void print_ups_param(int selected, int slot) { print_screen(ups_screen, {.ups = slot}, selected); }

void ups_param(int slot) { run_screen(ups_screen, {.ups = slot}); }
