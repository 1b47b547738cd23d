#include "schedule/parallel_functions.h"

#include "groups/group_param.h"
#include "kit/screens.h"
#include "lang/lang_text.h"

namespace {

bool groups_enabled(const Subject&) { return INI1.system.EnabledGroups != 0; }

// --- The groups ---------------------------------------------------------------------------------

/// Every group looks unused here, whatever its name. Operators know them by their numbers.
void print_group_line(const Subject&, int) { print_value(shown_text(text::unused)); }

void open_group(const Subject&, int item) { group_param(item - 1); }

constexpr Row group_list_rows[] = {
    rule,
    back.unaligned(),  // below the first digit of 10; other lists have it below the second
};
constexpr Screen group_list{
    .start_row = 2,
    .title = text::groups,
    .list = {.count = group_count, .line = print_group_line, .enter = open_group},
    .rows = group_list_rows};

// --- The functions ------------------------------------------------------------------------------

/// While groups are off, item 5 is dim. Going up from the back item, the arrow passes over item 4
/// as well. Operators count key presses.
int skip_four_going_up(const Subject& s, int from, int to) {
  return from == 8 && !groups_enabled(s) ? 3 : to;
}

constexpr Row function_rows[] = {
    flag("1", text::groups_enabled, FIELD(Record, system.EnabledGroups)),
    flag("2", text::device_actions, FIELD(Record, system.DeviceActions)),
    flag("3", text::lost_communication_alarm, FIELD(Record, system.LostCommRaiseAlarm)),
    flag("4", text::no_single_shutdown, FIELD(Record, system.DisableShutdownForSingleUPS)),
    rule,
    open("5", text::groups, &group_list).live_if(groups_enabled),
    rule,
    back,
};
constexpr Screen functions_screen{.start_row = 2,
                                  .title = text::parallel_functions,
                                  .rows = function_rows,
                                  .step = skip_four_going_up};

}  // namespace

void print_paralel_group(int selected) { print_screen(group_list, {}, selected); }

void print_paralel_fnc(int selected) { print_screen(functions_screen, {}, selected); }

void paralel_fnc() { run_screen(functions_screen); }
