#include "menus/network_menu.h"

#include "menus/password_entry.h"
#include "menus/screen_kit.h"

namespace {

constexpr std::size_t password_size = 256;

bool has_password(const Subject&) { return INI1.system.PasswordProtection != 0; }

int change_password(const Subject&, int item) {
  return enter_password(INI1.system.PasswordProtection, password_size, item);
}

const Row network_rows[] = {
    {.act = Act::number,
     .lead = "      1 - ",
     .label = text::check_rate,
     .field = RECORD_FIELD(network, CheckRate),
     .low = 1,
     .high = 255},
    {.act = Act::flag,
     .lead = "      2 - ",
     .label = text::network_server,
     .field = RECORD_FIELD(network, Server)},
    {.act = Act::number,
     .lead = "      3 - ",
     .label = text::network_port,
     .field = RECORD_FIELD(network, Port),
     .low = 1000,
     .high = 65535},
    {.act = Act::flag,
     .lead = "      4 - ",
     .label = text::ignore_remote_commands,
     .field = RECORD_FIELD(system, IgnoreRemoteUPSCommands)},
    {.act = Act::flag,
     .lead = "      5 - ",
     .label = text::http_access,
     .field = RECORD_FIELD(network, HTTP)},
    {.act = Act::text,
     .lead = "      6 - ",
     .label = text::http_path,
     .field = RECORD_FIELD(network, HTTPPath)},
    // Switched on, the check value is 1: a password is wanted, and the next item sets it.
    {.act = Act::flag,
     .lead = "      7 - ",
     .label = text::password_on,
     .field = RECORD_FIELD(system, PasswordProtection)},
    {.act = Act::open,
     .lead = "          7.1 - ",
     .label = text::enter_password,
     .live = has_password,
     .enter = change_password},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen network_screen{
    .start_row = 2, .title = text::network_parameters, .rows = network_rows};

}  // namespace

void print_network_menu(int selected) { print_screen(network_screen, {}, selected); }

void network_param() { run_screen(network_screen); }
