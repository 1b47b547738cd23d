#include "ups/ups_list.h"

#include "menus/screen_kit.h"
#include "schedule/parallel_functions.h"
#include "ups/ups_line.h"
#include "ups/ups_param.h"

namespace {

void print_slot(const Subject&, int item) { print_ups_line(item, LinkValues::saved); }

int open_slot(const Subject&, int item) {
  ups_param(item - 1);
  return item;
}

/// A single UPS has nothing to work in parallel with.
bool several_in_use(const Subject&) { return ups_used() > 1; }

const Row list_rows[] = {
    {},
    {.act = Act::open,
     .lead = "      17 - ",
     .label = text::parallel_functions,
     .live = several_in_use,
     .open = [](const Subject&) { paralel_fnc(); }},
    {},
    {.act = Act::back, .lead = "       0 - ", .label = text::back},
};

const Screen list_screen{.start_row = compact,
                         .title = text::ups_list,
                         .rows = list_rows,
                         .listed = ups_count,
                         .list_line = print_slot,
                         .list_enter = open_slot};

}  // namespace

void print_conn_param(int selected) { print_screen(list_screen, {}, selected); }

void conn_param() { run_screen(list_screen); }
