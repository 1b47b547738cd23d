#include "menus/modem_menus.h"

#include "kit/screens.h"

namespace {

bool modem_allowed(const Subject&) { return INI1.modem_config.Allowed != 0; }
bool gsm_modem_allowed(const Subject&) { return INI1.sms_config.Allowed != 0; }

// --- The dial-up modem --------------------------------------------------------------------------

constexpr Row modem_rows[] = {
    flag("1", text::modem_allowed, FIELD(Record, modem_config.Allowed)).one_letter(),
    words("2", text::serial_port, FIELD(Record, modem_config.Port)).live_if(modem_allowed),
    words("3", text::first_number, FIELD(Record, modem_config.Number1))
        .marked("[1] ")
        .live_if(modem_allowed),
    words("4", text::second_number, FIELD(Record, modem_config.Number2))
        .marked("[2] ")
        .live_if(modem_allowed),
    number("5", text::call_repeats, FIELD(Record, modem_config.Repeat), 0, 99)
        .live_if(modem_allowed),
    number("6", text::call_delay, FIELD(Record, modem_config.Delay), 0, 99).live_if(modem_allowed),
    flag("7", text::incoming_calls, FIELD(Record, modem_config.IncommingAllowed))
        .one_letter()
        .live_if(modem_allowed),
    rule,
    back,
};

constexpr Screen modem_screen{.start_row = 2, .title = text::modem_title, .rows = modem_rows};

// --- The GSM modem ------------------------------------------------------------------------------

enum GsmItem { allowed_item = 1, back_item = 6 };

std::string gsm_type(const Subject&) {
  return INI1.sms_config.Type == 0 ? "0 - Siemens" : "1 - Falcom";
}

void toggle_gsm_type(const Subject&) { INI1.sms_config.Type = INI1.sms_config.Type == 0 ? 1 : 0; }

/// Going down, the arrow passes over the settings while this modem is off. Going up from the last
/// item, it passes over them while the dial-up modem is off. So the arrow may rest on dimmed
/// settings and may miss bright ones. Operators count key presses.
int gsm_step(const Subject& subject, int from, int to) {
  if (from == allowed_item && !gsm_modem_allowed(subject)) return back_item;
  if (from == back_item && !modem_allowed(subject)) return allowed_item;
  return to;
}

constexpr Row gsm_modem_rows[] = {
    flag("1", text::gsm_modem_allowed, FIELD(Record, sms_config.Allowed)).one_letter(),
    words("2", text::serial_port, FIELD(Record, sms_config.Port)).shown_if(gsm_modem_allowed),
    words("3", text::sms_centre, FIELD(Record, sms_config.SMSCentre)).shown_if(gsm_modem_allowed),
    custom("4", text::gsm_modem_type, gsm_type, toggle_gsm_type)
        .in_brackets()
        .shown_if(gsm_modem_allowed),
    rule,
    back,
};

constexpr Screen gsm_modem_screen{
    .start_row = 2, .title = text::gsm_modem_title, .rows = gsm_modem_rows, .step = gsm_step};

// --- WAP ----------------------------------------------------------------------------------------

constexpr Row wap_rows[] = {
    flag("1", text::wap_allowed, FIELD(Record, wap_config.Allowed)).one_letter(),
    rule,
    back,
};

constexpr Screen wap_screen{.start_row = 4, .title = text::wap_title, .rows = wap_rows};

}  // namespace

void print_modem_param(int selected) { print_screen(modem_screen, {}, selected); }

void modem_param() { run_screen(modem_screen); }

void print_gsm_modem_param(int selected) { print_screen(gsm_modem_screen, {}, selected); }

void gsm_modem_param() { run_screen(gsm_modem_screen); }

void print_wap_param(int selected) { print_screen(wap_screen, {}, selected); }

void wap_param() { run_screen(wap_screen); }
