#pragma once

#include <string>

#include "config/record.h"
#include "lang/text_ids.h"

/// How the screens describe a schedule entry. The entry may come from a file unchecked, so unknown
/// numbers have a text too.

/// The actions that the editor offers, 1 to 6, in this order. A file may also hold 7, the shutdown
/// of the operating system alone.
inline constexpr text::Id offered_actions[] = {
    text::schedule_system_shutdown, text::schedule_ups_shutdown, text::schedule_ups_restart,
    text::schedule_ups_test,        text::schedule_battery_test, text::schedule_panel_test,
};

/// The name of the UPS, or "?" when its slot is not in use.
std::string schedule_ups(const ScheduleEntry& entry);

/// The action as one word of the service, or text 278.
std::string schedule_keyword(const ScheduleEntry& entry);

/// The action in the operator's language, or text 278.
std::string schedule_action(const ScheduleEntry& entry);

/// The time as the list shows it: "[W - Wed - 20:15]". Text 278 for an unknown repetition.
std::string schedule_short_time(const ScheduleEntry& entry);

/// The time as the editor shows it: "Weekly - Wednesday - 20:15". Text 278 for an unknown
/// repetition.
std::string schedule_time(const ScheduleEntry& entry);
