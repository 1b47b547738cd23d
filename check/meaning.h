#pragma once

/// What the rules of the menus make certain to be wrong. Adds the findings of the group `meaning`
/// for what has been loaded into `INI1`. A check that needs a file which is not part of the run is
/// left out.
void check_meaning();
