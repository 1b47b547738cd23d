#include "menus/main_menu.h"

#include <cstring>

#include "config/store.h"
#include "kit/screens.h"
#include "lang/lang_text.h"
#include "menus/messages_menu.h"
#include "menus/system_menu.h"
#include "schedule/job_menus.h"
#include "schedule/schedule_menus.h"
#include "tui/format.h"
#include "tui/terminal.h"
#include "ups/ups_list.h"

namespace {

constexpr char version[] = HARRIER_VERSION " - " HARRIER_VERSION_DATE;

/// The product's name stands above and below the version.
void print_main_frame(const Subject&) {
  print_escapeseq(escape::clear_screen);
  cursor_gotopos(4, 0, 0);
  print_line(1);
  print_center(shown_text(text::product_title));
  print_center(format("Harrier %s", version));
  print_line(3);
  print_center(shown_text(text::product_title));
  print_line(1);
}

constexpr Row main_rows[] = {
    open("1", text::system_parameters, opens<main_param>),
    open("2", text::ups_parameters, opens<conn_param>),
    open("3", text::messages, opens<mess_param>),
    open("4", text::schedules, opens<shed_param>),
    open("5", text::jobs, opens<jobs_param>),
    rule,
    back,
};

constexpr Screen main_screen{
    .start_row = 4, .rows = main_rows, .frame = print_main_frame, .frame_lines = 6};

}  // namespace

void print_main_menu(int selected) { print_screen(main_screen, {}, selected); }

void main_menu() {
  take_terminal();
  single_key_mode();
  print_escapeseq(escape::hide_cursor);
  print_escapeseq(escape::black_background);
  print_escapeseq(escape::normal);
  run_screen(main_screen);
  DataChanged = std::memcmp(&INI1, &INI, sizeof INI) != 0 ? 1 : 0;
  print_escapeseq(escape::clear_screen);
  print_escapeseq(escape::show_cursor);
  line_mode();
}
