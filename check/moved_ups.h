#pragma once

/// Adds a finding for each member of a group, schedule and sensor that refers to a UPS by a number
/// which means another UPS, or none, after the next save. `check_saving` calls this.
void check_moved_ups();
