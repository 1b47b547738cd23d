#pragma once

/// The root of the screens. Runs until item 0 is chosen. Then `DataChanged` says whether the
/// working copy differs from what was loaded, the screen is clear, and the terminal is in line
/// mode.
void main_menu();
void print_main_menu(int selected);
