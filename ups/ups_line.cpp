#include "ups/ups_line.h"

#include "config/record.h"
#include "kit/screens.h"
#include "lang/lang_text.h"
#include "tui/columns.h"
#include "tui/format.h"
#include "ups/type_code.h"
#include "ups/ups_slot.h"

namespace {

constexpr int name_columns = 16;
constexpr int model_columns = 18;

template <std::size_t N>
std::string shown(const Text<N>& text) {
  return printable(text.view());
}

std::string link(int slot, LinkValues rfc1628) {
  const UPS& ups = INI1.ups[slot];
  switch (ups.Connection) {
    case serial_link:
      return format("%s - %s - %02u", shown_text(text::serial_line).c_str(),
                    shown(ups.Port).c_str(), ups.Address);
    case snmp_link:
      return format("SNMP - %s - %u", shown(ups.IPAddress).c_str(), ups.Device);
    case tcp_ip_link:
      return format("TCP/IP - %s - %u", shown(ups.IPAddress).c_str(), ups.Device);
    case rfc1628_link: {
      const UPS& source = rfc1628 == LinkValues::saved ? INI.ups[slot] : ups;
      return format("SNMP(1628) - %s - %u", shown(source.Port).c_str(), source.Device);
    }
    default:
      return shown_text(text::unknown_connection);
  }
}

/// What a list shows after the number of a slot.
std::string described(int slot, LinkValues rfc1628) {
  if (!ups_in_use(slot)) return shown_text(text::unused);
  std::string name = shown(INI1.ups[slot].Name);
  std::string model = ups_model(slot);
  return dopln(name, name_columns, " ") + " " + dopln(model, model_columns, " ") + " " +
         link(slot, rfc1628);
}

}  // namespace

void print_ups_line(int slot, LinkValues rfc1628) { print_value(described(slot, rfc1628)); }

std::string ups_model(int slot) {
  const std::string code(INI1.ups[slot].Type.view());
  return FindUpsModelTxt(code.c_str()) == nullptr ? shown_text(text::unknown_model)
                                                  : printable(FindModel.text);
}
