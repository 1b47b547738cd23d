#include "menus/main_menu.h"

#include <cstring>

#include "config/store.h"
#include "lang/lang_text.h"
#include "menus/messages_menu.h"
#include "menus/screen_kit.h"
#include "menus/system_menu.h"
#include "schedule/job_menus.h"
#include "schedule/schedule_menus.h"
#include "tui/terminal.h"
#include "ups/ups_list.h"

namespace {

constexpr char version[] = HARRIER_VERSION " - " HARRIER_VERSION_DATE;

/// The product's name stands above and below the version.
void print_main_frame(const Subject&) {
  print_escapeseq(clear_screen);
  cursor_gotopos(4, 0, 0);
  print_line(1);
  print_center(LangText[text::product_title]);
  print_center(format("Harrier %s", version));
  print_line(3);
  print_center(LangText[text::product_title]);
  print_line(1);
}

const Row main_rows[] = {
    {.act = Act::open,
     .lead = "      1 - ",
     .label = text::system_parameters,
     .open = [](const Subject&) { main_param(); }},
    {.act = Act::open,
     .lead = "      2 - ",
     .label = text::ups_parameters,
     .open = [](const Subject&) { conn_param(); }},
    {.act = Act::open,
     .lead = "      3 - ",
     .label = text::messages,
     .open = [](const Subject&) { mess_param(); }},
    {.act = Act::open,
     .lead = "      4 - ",
     .label = text::schedules,
     .open = [](const Subject&) { shed_param(); }},
    {.act = Act::open,
     .lead = "      5 - ",
     .label = text::jobs,
     .open = [](const Subject&) { jobs_param(); }},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen main_screen{
    .start_row = 4, .rows = main_rows, .frame = print_main_frame, .frame_lines = 6};

}  // namespace

void print_main_menu(int selected) { print_screen(main_screen, {}, selected); }

void main_menu() {
  take_terminal();
  single_key_mode();
  print_escapeseq(hide_cursor);
  print_escapeseq(black_background);
  print_escapeseq(normal);
  run_screen(main_screen);
  DataChanged = std::memcmp(&INI1, &INI, sizeof INI) != 0 ? 1 : 0;
  print_escapeseq(clear_screen);
  print_escapeseq(show_cursor);
  line_mode();
}
