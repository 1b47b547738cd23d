#pragma once

/// The root of the screens. Runs until its item 0 is chosen; then `DataChanged` tells whether the
/// working copy differs from what was loaded, the screen is clear and the terminal in line mode.
void main_menu();
void print_main_menu(int selected);
