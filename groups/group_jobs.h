#pragma once

#include <cstdint>

/// The editor of action `action`, 0 to 7, of event `event` (0 to 63) of a group. Leaving it always
/// stores the values.
void group_job_param1(int group, int event, int action);

/// `items` says how many items the action has: 1 the switch, 2 also the delay, 3 the interval, 4
/// the program file. The interval has no line unless `shows_interval`.
void print_group_job_param1(int selected, int group, int event, int action, std::uint16_t flag,
                            std::uint16_t delay, std::uint16_t interval, int items,
                            bool shows_interval);
