#include "menus/system_menu.h"

#include "kit/screens.h"
#include "kit/value_entry.h"
#include "lang/language_choice.h"
#include "menus/network_menu.h"

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

// The bound that was just edited is corrected, within its 16 bits.

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

std::string language(const Subject&) { return shown_language; }

constexpr Row system_rows[] = {
    words("1", text::system_name, FIELD(Record, system.Name)),
    words("2", text::location, FIELD(Record, system.Location)),
    words("3", text::contact, FIELD(Record, system.Contact)),
    rule,
    custom("4", text::language, language, choose_language),
    rule,
    flag("5", text::event_log, FIELD(Record, system.EventLog)),
    flag("6", text::data_log, FIELD(Record, system.DataLog)),
    number("6.1", text::data_log_rate, FIELD(Record, system.DataLogRate), 1, 1000).live_if(logging),
    number("6.2", text::data_log_min, FIELD(Record, system.DataLogMin), 1, 30000)
        .live_if(logging)
        .then(keep_min_below_max),
    number("6.3", text::data_log_max, FIELD(Record, system.DataLogMax), 1, 30000)
        .live_if(logging)
        .then(keep_max_above_min),
    rule,
    open("7", text::network_parameters, opens<network_param>),
    rule,
    back,
};

constexpr Screen system_screen{
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
