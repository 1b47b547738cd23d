#pragma once

#include "config/record.h"

/// What the codes of the schedules say.

/// Actions that shut the system down. The second one does nothing to a UPS.
constexpr int system_shutdown = 1;
constexpr int operating_system_shutdown = 7;

/// Whether an entry is in use, and its code is in order.
bool is_schedule(const ScheduleEntry& entry);

/// Whether an entry is a single action whose minute has passed.
bool is_past(const ScheduleEntry& entry);

/// Adds the findings of the classes schedule_code, schedule_past and schedule_day.
void check_schedules();
