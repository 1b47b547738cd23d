#include "check/secret.h"

#include <algorithm>
#include <iterator>

bool is_secret(std::string_view key) {
  constexpr std::string_view keys[] = {"Login", "Password", "PasswordProtection"};
  return std::find(std::begin(keys), std::end(keys), key) != std::end(keys);
}

bool is_hidden(std::string_view key) {
  return is_secret(key) || key == "SNMPGetComm" || key == "SNMPSetComm";
}

std::string without_value(std::string_view line) {
  const std::size_t end = line.find_first_of("=: \t\"';,");
  const bool has_value = end != std::string_view::npos &&
                         line.find_first_not_of(" \t\r", end + 1) != std::string_view::npos;
  return has_value ? std::string(line.substr(0, end + 1)) + "..." : std::string(line);
}
