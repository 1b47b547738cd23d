#include "config/password.h"

std::uint16_t CalculatePassword(const char* text) {
  unsigned sum = 0;
  for (; *text != '\0'; ++text) sum += static_cast<unsigned>(static_cast<signed char>(*text));
  return static_cast<std::uint16_t>(sum);
}
