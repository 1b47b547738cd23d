#include "schedule/schedule_code.h"

#include <string>

ScheduleEntry ShedAction1;

namespace {

/// Bytes of the text form. Each takes two digits.
constexpr int code_bytes = 9;
static_assert(2 * code_bytes < sizeof(ScheduleEntry::code));

void append_byte(std::string& code, std::uint32_t number, int shift) {
  constexpr char digits[] = "0123456789ABCDEF";
  code += digits[number >> (shift + 4) & 15];
  code += digits[number >> shift & 15];
}

/// The value of a hexadecimal digit. Any other character results in some number.
int digit(char c) {
  if (c >= 'A' && c <= 'F') return c - 7 - '0';
  if (c >= 'a' && c <= 'f') return c - 39 - '0';
  return c - '0';
}

}  // namespace

void EncodeSchedules() {
  for (ScheduleEntry& entry : INI.schedule) {
    if (entry.action == 0) {
      entry = {};
      continue;
    }
    ShedAction1 = entry;
    std::string code;
    for (const int shift : {24, 16, 8, 0}) {
      append_byte(code, static_cast<std::uint32_t>(entry.time), shift);
    }
    for (const int shift : {8, 0}) append_byte(code, entry.ups, shift);
    for (const std::uint8_t byte : {entry.action, entry.type, entry.day}) {
      append_byte(code, byte, 0);
    }
    ShedAction1.code.assign(code);
    entry = ShedAction1;
  }
}

void DecodeSchedules() {
  for (ScheduleEntry& entry : INI.schedule) {
    if (entry.code.empty()) continue;
    // All 18 places lie within the field, so a short code may be read past its end.
    std::uint8_t byte[code_bytes];
    for (int i = 0; i < code_bytes; ++i) byte[i] = get_hex(entry.code.bytes + 2 * i);
    ShedAction1 = entry;
    ShedAction1.time =
        static_cast<std::int32_t>(std::uint32_t{byte[0]} << 24 | std::uint32_t{byte[1]} << 16 |
                                  std::uint32_t{byte[2]} << 8 | byte[3]);
    ShedAction1.ups = static_cast<std::uint16_t>(byte[4] << 8 | byte[5]);
    ShedAction1.action = byte[6];
    ShedAction1.type = byte[7];
    ShedAction1.day = byte[8];
    entry = ShedAction1;
  }
}

std::uint8_t get_hex(const char* text) {
  return static_cast<std::uint8_t>(digit(text[0]) * 16 + digit(text[1]));
}
