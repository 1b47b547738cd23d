#pragma once

#include <cstdint>

/// What a type code says about a UPS.
struct UpsModel {
  char text[51];        // the code itself, up to 50 characters of it, or "Unknow model"
  std::uint8_t number;  // 14, 21 or 30; 255 when unknown
  std::uint8_t flag;    // 1 for the TARVO line
  std::uint16_t baud;   // 1200, 2400, 4800 or 9600
};

/// The result of the last call of `FindUpsModelTxt`, whether it succeeded or not.
extern UpsModel FindModel;

/// Decodes the code that is printed on a UPS. It has 12 characters or more: the first five name the
/// product line, the seventh the speed of the serial line. Returns `FindModel`, or null for a code
/// of no product line that the service supports. `code` must not point into `FindModel`.
const UpsModel* FindUpsModelTxt(const char* code);
