#include "schedule/parallel_functions.h"

#include "groups/group_param.h"
#include "lang/lang_text.h"
#include "menus/screen_kit.h"

namespace {

bool groups_enabled(const Subject&) { return INI1.system.EnabledGroups != 0; }

// --- The groups ---------------------------------------------------------------------------------

/// Every group looks unused here, whatever its name; the number alone tells them apart.
void print_group_line(const Subject&, int item) {
  print_list_number(item);
  print_value(LangText[text::unused], number_columns);
}

int open_group(const Subject&, int item) {
  group_param(item - 1);
  return item;
}

const Row group_list_rows[] = {
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};
const Screen group_list{.start_row = 2,
                        .title = text::groups,
                        .rows = group_list_rows,
                        .listed = group_count,
                        .list_line = print_group_line,
                        .list_enter = open_group};

// --- The functions ------------------------------------------------------------------------------

/// While groups are off, the arrow going up from the back item passes over item 4 as well as over
/// the dimmed item 5; operators count key presses.
int skip_four_going_up(const Subject& s, int from, int to) {
  return from == 8 && !groups_enabled(s) ? 3 : to;
}

const Row function_rows[] = {
    {.act = Act::flag,
     .lead = "      1 - ",
     .label = text::groups_enabled,
     .field = RECORD_FIELD(system, EnabledGroups)},
    {.act = Act::flag,
     .lead = "      2 - ",
     .label = text::device_actions,
     .field = RECORD_FIELD(system, DeviceActions)},
    {.act = Act::flag,
     .lead = "      3 - ",
     .label = text::lost_communication_alarm,
     .field = RECORD_FIELD(system, LostCommRaiseAlarm)},
    {.act = Act::flag,
     .lead = "      4 - ",
     .label = text::no_single_shutdown,
     .field = RECORD_FIELD(system, DisableShutdownForSingleUPS)},
    {},
    {.act = Act::open,
     .lead = "      5 - ",
     .label = text::groups,
     .live = groups_enabled,
     .open = [](const Subject&) { run_screen(group_list); }},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};
const Screen functions_screen{.start_row = 2,
                              .title = text::parallel_functions,
                              .rows = function_rows,
                              .step = skip_four_going_up};

}  // namespace

void print_paralel_group(int selected) { print_screen(group_list, {}, selected); }

void print_paralel_fnc(int selected) { print_screen(functions_screen, {}, selected); }

void paralel_fnc() { run_screen(functions_screen); }
