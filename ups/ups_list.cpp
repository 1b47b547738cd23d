#include "ups/ups_list.h"

#include "kit/screens.h"
#include "schedule/parallel_functions.h"
#include "ups/ups_line.h"
#include "ups/ups_param.h"
#include "ups/ups_slot.h"

namespace {

void print_slot(const Subject&, int item) { print_ups_line(item - 1, LinkValues::saved); }

void open_slot(const Subject&, int item) { ups_param(item - 1); }

/// The parallel functions need a second UPS.
bool several_in_use(const Subject&) { return ups_used() > 1; }

constexpr Row list_rows[] = {
    rule,
    open("17", text::parallel_functions, opens<paralel_fnc>).live_if(several_in_use),
    rule,
    back,
};

constexpr Screen list_screen{.start_row = compact,
                             .title = text::ups_list,
                             .list = {.count = ups_count, .line = print_slot, .enter = open_slot},
                             .rows = list_rows};

}  // namespace

void print_conn_param(int selected) { print_screen(list_screen, {}, selected); }

void conn_param() { run_screen(list_screen); }
