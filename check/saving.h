#pragma once

/// What the next save drops, moves or adds, by the writers' own rules. Adds the findings of the
/// group `saving` for what has been loaded into `INI` and `INI1` (which are equal and stay so).
void check_saving();
