#include "menus/system_menu.h"

#include "lang/language_choice.h"
#include "menus/network_menu.h"
#include "menus/screen_kit.h"

namespace {

constexpr unsigned largest = 65535;

LanguageNames language_names;

/// What the row of the language shows.
const char* shown_language = "";

void note_shown_language() {
  const unsigned number = INI1.system.Language;
  shown_language = number < language_names.size() ? language_names[number] : "";
}

bool logging(const Subject&) { return INI1.system.DataLog != 0; }

// The bound that was just edited gives way, within what its 16 bits hold.

void keep_min_below_max(const Subject&) {
  SystemBlock& system = INI1.system;
  const unsigned highest = system.DataLogMax == 0 ? 0 : system.DataLogMax - 1U;
  if (system.DataLogMin <= highest) return;
  show_refusal(text::bounds_corrected);
  system.DataLogMin = static_cast<std::uint16_t>(highest);
}

void keep_max_above_min(const Subject&) {
  SystemBlock& system = INI1.system;
  const unsigned lowest = system.DataLogMin == largest ? largest : system.DataLogMin + 1U;
  if (system.DataLogMax >= lowest) return;
  show_refusal(text::bounds_corrected);
  system.DataLogMax = static_cast<std::uint16_t>(lowest);
}

void choose_language(const Subject&) {
  menu_languages(language_names);
  note_shown_language();
}

const Row system_rows[] = {
    {.act = Act::text,
     .lead = "      1 - ",
     .label = text::system_name,
     .field = RECORD_FIELD(system, Name)},
    {.act = Act::text,
     .lead = "      2 - ",
     .label = text::location,
     .field = RECORD_FIELD(system, Location)},
    {.act = Act::text,
     .lead = "      3 - ",
     .label = text::contact,
     .field = RECORD_FIELD(system, Contact)},
    {},
    {.act = Act::custom,
     .lead = "      4 - ",
     .label = text::language,
     .value = [](const Subject&) { return std::string(shown_language); },
     .open = choose_language},
    {},
    {.act = Act::flag,
     .lead = "      5 - ",
     .label = text::event_log,
     .field = RECORD_FIELD(system, EventLog)},
    {.act = Act::flag,
     .lead = "      6 - ",
     .label = text::data_log,
     .field = RECORD_FIELD(system, DataLog)},
    {.act = Act::number,
     .lead = "          6.1 - ",
     .label = text::data_log_rate,
     .field = RECORD_FIELD(system, DataLogRate),
     .low = 1,
     .high = 1000,
     .live = logging},
    {.act = Act::number,
     .lead = "          6.2 - ",
     .label = text::data_log_min,
     .field = RECORD_FIELD(system, DataLogMin),
     .low = 1,
     .high = 30000,
     .live = logging,
     .settle = keep_min_below_max},
    {.act = Act::number,
     .lead = "          6.3 - ",
     .label = text::data_log_max,
     .field = RECORD_FIELD(system, DataLogMax),
     .low = 1,
     .high = 30000,
     .live = logging,
     .settle = keep_max_above_min},
    {},
    {.act = Act::open,
     .lead = "      7 - ",
     .label = text::network_parameters,
     .open = [](const Subject&) { network_param(); }},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen system_screen{
    .start_row = 0, .title = text::system_parameters_title, .rows = system_rows};

}  // namespace

void print_main_param(const char* language_name, int selected) {
  shown_language = language_name;
  print_screen(system_screen, {}, selected);
}

void main_param() {
  load_language_names(language_names);
  note_shown_language();
  run_screen(system_screen);
}
