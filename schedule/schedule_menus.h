#pragma once

#include <cstdint>

/// The list of the 16 schedule entries, item 4 of the main menu.
void shed_param();
void print_sched_param(int selected);

/// Draws what the entries of the working copy will do from `*start` until `*end`, in seconds since
/// 1970. The arrow stands on "show more" (1) or on the way back (2). Moves `*start` to the end of
/// the period, so a second call draws no lines. Returns the number of lines. A long list scrolls
/// the terminal.
int print_next_actions(std::int64_t* start, const std::int64_t* end, int selected);
