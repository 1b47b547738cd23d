#pragma once

#include <cstdint>

/// The numbers of the texts in a language file, by name: screens write shown_text(text::yes).
/// `lang/texts.inc` lists them.
namespace text {

enum Id : std::uint16_t {
#define TEXT(number, name, place) name = number,
#include "lang/texts.inc"
#undef TEXT
};

// The first texts of ranges: screens add the number of the event, of the action or of the day.
constexpr Id event_first = event_power_failure;        // + event, 0 to 21
constexpr Id long_message_first = long_power_failure;  // + event, 0 to 21
constexpr Id action_first = action_log;                // + action, 0 to 7
constexpr Id weekday_first = sunday;                   // + day, 0 to 6

// The same for numbers that do not begin at 0. A base is no text of the range itself.
constexpr Id condition_base{event_first - 1};                  // + condition type, 1 to 22
constexpr Id sensor_message_base{message_humidity_high - 22};  // + event, 22 to 29

constexpr Id last_used = long_sensor_alarm_ended;  // a language file is complete up to here

}  // namespace text
