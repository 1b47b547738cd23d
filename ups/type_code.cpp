#include "ups/type_code.h"

#include <cstring>
#include <string_view>

UpsModel FindModel;

namespace {

constexpr std::uint8_t unknown_model = 255;

std::uint8_t number_of(std::string_view code) {
  if (code.starts_with("TARVO")) return 14;
  if (code.starts_with("LUMEN")) return code[5] == '3' ? 30 : 21;
  return unknown_model;
}

/// The speed that the seventh character stands for, 0 for none.
std::uint16_t baud_of(char speed) {
  switch (speed) {
    case '1':
      return 1200;
    case '2':
      return 2400;
    case '4':
      return 4800;
    case '9':
      return 9600;
    default:
      return 0;
  }
}

}  // namespace

const UpsModel* FindUpsModelTxt(const char* code) {
  constexpr std::size_t shortest_code = 12;
  const std::string_view text(code);
  // The service compares this spelling.
  FindModel = {"Unknow model", unknown_model, 0, 2400};
  if (text.size() < shortest_code) return nullptr;
  const std::uint8_t number = number_of(text);
  const std::uint16_t baud = baud_of(text[6]);
  if (number == unknown_model || baud == 0) return nullptr;
  std::strncpy(FindModel.text, code, sizeof FindModel.text - 1);
  FindModel.number = number;
  FindModel.flag = text.starts_with("TARVO") ? 1 : 0;
  FindModel.baud = baud;
  return &FindModel;
}
