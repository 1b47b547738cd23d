#include "menus/network_menu.h"

#include "kit/password_entry.h"
#include "kit/screens.h"

namespace {

constexpr std::size_t password_size = 256;

bool has_password(const Subject&) { return INI1.system.PasswordProtection != 0; }

int change_password(const Subject&, int item) {
  return enter_password(INI1.system.PasswordProtection, password_size, item);
}

constexpr Row network_rows[] = {
    number("1", text::check_rate, FIELD(Record, network.CheckRate), 1, 255),
    flag("2", text::network_server, FIELD(Record, network.Server)),
    number("3", text::network_port, FIELD(Record, network.Port), 1000, 65535),
    flag("4", text::ignore_remote_commands, FIELD(Record, system.IgnoreRemoteUPSCommands)),
    flag("5", text::http_access, FIELD(Record, network.HTTP)),
    words("6", text::http_path, FIELD(Record, network.HTTPPath)),
    // Switching it on stores the check value 1: a password is wanted. The next item sets it.
    flag("7", text::password_on, FIELD(Record, system.PasswordProtection)),
    open("7.1", text::enter_password, change_password).live_if(has_password),
    rule,
    back,
};

constexpr Screen network_screen{
    .start_row = 2, .title = text::network_parameters, .rows = network_rows};

}  // namespace

void print_network_menu(int selected) { print_screen(network_screen, {}, selected); }

void network_param() { run_screen(network_screen); }
