#include "ups/ups_connection.h"

#include <algorithm>
#include <iterator>

#include "config/record.h"
#include "kit/password_entry.h"
#include "kit/screens.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "tui/format.h"

namespace {

constexpr std::size_t password_size = 120;

UPS& ups_of(const Subject& s) { return INI1.ups[s.ups]; }

void* entry_of_ups(const Subject& s) { return &ups_of(s); }

bool on_serial_line(const Subject& s) { return ups_of(s).Connection == serial_link; }
bool on_tcp_ip(const Subject& s) { return ups_of(s).Connection == tcp_ip_link; }
bool on_rfc1628(const Subject& s) { return ups_of(s).Connection == rfc1628_link; }

bool on_network(const Subject& s) {
  return on_tcp_ip(s) || on_rfc1628(s) || ups_of(s).Connection == snmp_link;
}

bool known_link(const Subject& s) { return on_serial_line(s) || on_network(s); }
bool always(const Subject&) { return true; }

bool has_password(const Subject& s) { return on_tcp_ip(s) && ups_of(s).Password != 0; }

std::string link_name(const Subject& s) {
  switch (ups_of(s).Connection) {
    case serial_link:
      return shown_text(text::serial_line);
    case snmp_link:
      return "SNMP";
    case tcp_ip_link:
      return "TCP/IP";
    case rfc1628_link:
      return "SNMP - RFC1628";
    default:
      return shown_text(text::unknown_connection);
  }
}

/// The next kind of link, in the order that operators know: TCP/IP comes before SNMP. Any other
/// kind stays as it is. Only a file can hold one.
void change_link(const Subject& s) {
  constexpr std::uint16_t order[] = {serial_link, tcp_ip_link, snmp_link, rfc1628_link};
  std::uint16_t& link = ups_of(s).Connection;
  const auto* const at = std::find(std::begin(order), std::end(order), link);
  if (at == std::end(order)) return;
  link = at + 1 == std::end(order) ? order[0] : at[1];
}

/// The screen shows the address with two digits, the editor without a leading zero.
void edit_address(const Subject& s) {
  UPS& ups = ups_of(s);
  ups.Address =
      static_cast<std::uint8_t>(edit_number(text::device_address, ups.Address, 0, 255, " : "));
}

/// An RFC 1628 link keeps its agent's address in `Port`.
std::string network_address(const Subject& s) {
  const UPS& ups = ups_of(s);
  return std::string(on_rfc1628(s) ? ups.Port.view() : ups.IPAddress.view());
}

/// An RFC 1628 link does not use `IPAddress`. Editing the agent's address stores the address of
/// this machine there, even when the agent's address stays as it was.
void edit_network_address(const Subject& s) {
  UPS& ups = ups_of(s);
  if (on_rfc1628(s)) {
    edit_text_field(text::ip_address, ups.Port.bytes, sizeof ups.Port.bytes);
    ups.IPAddress.assign("127.0.0.1");
  } else {
    edit_text_field(text::ip_address, ups.IPAddress.bytes, sizeof ups.IPAddress.bytes);
  }
}

int change_password(const Subject& s, int item) {
  return enter_password(ups_of(s).Password, password_size, item);
}

std::string device_address(const Subject& s) { return format("%02u", unsigned{ups_of(s).Address}); }

constexpr Row connection_rows[] = {
    custom("1", text::connection, link_name, change_link).in_brackets(),
    rule,
    words("1.2", text::serial_port, FIELD(UPS, Port)).live_if(on_serial_line),
    custom("1.3", text::device_address, device_address, edit_address).live_if(on_serial_line),
    rule,
    custom("2.1", text::ip_address, network_address, edit_network_address).live_if(on_network),
    number("2.2", text::ups_port, FIELD(UPS, Device), 1, 65535).live_if(on_network),
    // Switching it on stores the check value 1: a password is wanted. The next item sets it.
    flag("2.3", text::password_on, FIELD(UPS, Password)).live_if(on_tcp_ip),
    open("2.3.1", text::enter_password, change_password).live_if(has_password),
    rule,
    // A link of an unknown kind holds the arrow on item 1, and Enter does not change it. Only a
    // text editor can mend such a file.
    back.live_if(known_link).shown_if(always),
};

constexpr Screen connection_screen{
    .start_row = 2, .title = text::connection, .rows = connection_rows, .entry = entry_of_ups};

}  // namespace

void print_ups_conn_param(int selected, int slot) {
  print_screen(connection_screen, {.ups = slot}, selected);
}

void ups_conn_param(int slot) { run_screen(connection_screen, {.ups = slot}); }
