#pragma once

/// Adds a finding for each member of a group, schedule and sensor that refers to a UPS by a number
/// which means another UPS, or none, after the next save. Returns whether there is any.
/// `check_saving` calls this.
bool check_moved_ups();

/// Whether the number of a slot means another UPS, or none, after the next save. A free slot does
/// if a UPS moves there.
bool changes_with_save(int slot);
