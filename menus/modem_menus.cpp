#include "menus/modem_menus.h"

#include "menus/screen_kit.h"

namespace {

bool modem_allowed(const Subject&) { return INI1.modem_config.Allowed != 0; }
bool gsm_modem_allowed(const Subject&) { return INI1.sms_config.Allowed != 0; }

// --- The dial-up modem --------------------------------------------------------------------------

const Row modem_rows[] = {
    {.act = Act::flag,
     .lead = "      1 - ",
     .label = text::modem_allowed,
     .field = RECORD_FIELD(modem_config, Allowed),
     .words = Words::yes_no_letter},
    {.act = Act::text,
     .lead = "      2 - ",
     .label = text::serial_port,
     .field = RECORD_FIELD(modem_config, Port),
     .live = modem_allowed},
    {.act = Act::text,
     .lead = "      3 - [1] ",
     .label = text::first_number,
     .field = RECORD_FIELD(modem_config, Number1),
     .live = modem_allowed},
    {.act = Act::text,
     .lead = "      4 - [2] ",
     .label = text::second_number,
     .field = RECORD_FIELD(modem_config, Number2),
     .live = modem_allowed},
    {.act = Act::number,
     .lead = "      5 - ",
     .label = text::call_repeats,
     .field = RECORD_FIELD(modem_config, Repeat),
     .low = 0,
     .high = 99,
     .live = modem_allowed},
    {.act = Act::number,
     .lead = "      6 - ",
     .label = text::call_delay,
     .field = RECORD_FIELD(modem_config, Delay),
     .low = 0,
     .high = 99,
     .live = modem_allowed},
    {.act = Act::flag,
     .lead = "      7 - ",
     .label = text::incoming_calls,
     .field = RECORD_FIELD(modem_config, IncommingAllowed),
     .words = Words::yes_no_letter,
     .live = modem_allowed},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen modem_screen{.start_row = 2, .title = text::modem_title, .rows = modem_rows};

// --- The GSM modem ------------------------------------------------------------------------------

enum GsmItem { allowed_item = 1, back_item = 6 };

std::string gsm_type(const Subject&) {
  return INI1.sms_config.Type == 0 ? "0 - Siemens" : "1 - Falcom";
}

void toggle_gsm_type(const Subject&) { INI1.sms_config.Type = INI1.sms_config.Type == 0 ? 1 : 0; }

/// On its way down the arrow passes over the settings while this modem is off, on its way up from
/// the last item while the dial-up modem is off: operators count key presses. So the arrow may come
/// to rest on dimmed settings, and may miss bright ones.
int gsm_step(const Subject& subject, int from, int to) {
  if (from == allowed_item && !gsm_modem_allowed(subject)) return back_item;
  if (from == back_item && !modem_allowed(subject)) return allowed_item;
  return to;
}

const Row gsm_modem_rows[] = {
    {.act = Act::flag,
     .lead = "      1 - ",
     .label = text::gsm_modem_allowed,
     .field = RECORD_FIELD(sms_config, Allowed),
     .words = Words::yes_no_letter},
    {.act = Act::text,
     .lead = "      2 - ",
     .label = text::serial_port,
     .field = RECORD_FIELD(sms_config, Port),
     .shown = gsm_modem_allowed},
    {.act = Act::text,
     .lead = "      3 - ",
     .label = text::sms_centre,
     .field = RECORD_FIELD(sms_config, SMSCentre),
     .shown = gsm_modem_allowed},
    {.act = Act::custom,
     .lead = "      4 - ",
     .label = text::gsm_modem_type,
     .shown = gsm_modem_allowed,
     .value = gsm_type,
     .bracketed = true,
     .open = toggle_gsm_type},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen gsm_modem_screen{
    .start_row = 2, .title = text::gsm_modem_title, .rows = gsm_modem_rows, .step = gsm_step};

// --- WAP ----------------------------------------------------------------------------------------

const Row wap_rows[] = {
    {.act = Act::flag,
     .lead = "      1 - ",
     .label = text::wap_allowed,
     .field = RECORD_FIELD(wap_config, Allowed),
     .words = Words::yes_no_letter},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen wap_screen{.start_row = 4, .title = text::wap_title, .rows = wap_rows};

}  // namespace

void print_modem_param(int selected) { print_screen(modem_screen, {}, selected); }

void modem_param() { run_screen(modem_screen); }

void print_gsm_modem_param(int selected) { print_screen(gsm_modem_screen, {}, selected); }

void gsm_modem_param() { run_screen(gsm_modem_screen); }

void print_wap_param(int selected) { print_screen(wap_screen, {}, selected); }

void wap_param() { run_screen(wap_screen); }
