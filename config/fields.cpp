#include "config/fields.h"

#include <cstring>

std::string_view text_at(const Field& field, const void* entry) {
  const char* text = static_cast<const char*>(entry) + field.offset;
  return {text, strnlen(text, field.width)};
}

char* bytes_at(const Field& field, void* entry) { return static_cast<char*>(entry) + field.offset; }

unsigned number_at(const Field& field, const void* entry) {
  const char* at = static_cast<const char*>(entry) + field.offset;
  if (field.kind == Kind::u8) return static_cast<unsigned char>(*at);
  std::uint16_t value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

void set_number_at(const Field& field, void* entry, unsigned value) {
  char* at = bytes_at(field, entry);
  if (field.kind == Kind::u8) {
    *at = static_cast<char>(value);
    return;
  }
  const auto wide = static_cast<std::uint16_t>(value);
  std::memcpy(at, &wide, sizeof wide);
}
