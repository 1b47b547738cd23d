#pragma once

/// The parallel functions: the settings that all groups share, and the list of the groups.
void paralel_fnc();
void print_paralel_fnc(int selected);

/// Draws the list of the groups with the arrow on `selected`.
void print_paralel_group(int selected);
