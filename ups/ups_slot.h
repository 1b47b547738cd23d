#pragma once

/// The 16 UPS slots of the working copy, numbered from 0.

/// Whether a slot is in use; false for a number outside the table.
bool ups_in_use(int slot);

/// How many slots are in use.
int ups_used();

/// Whether a group in use has this UPS as a member.
bool ups_in_group(int slot);

/// Fills a slot that gets its first name. The sensor, the two times and the SNMP communities stay
/// what they were.
void fill_ups_defaults(int slot);

/// Frees a slot that no group uses. Saving numbers the UPSs without gaps, so those after this slot
/// move down by one slot then. The groups refer to their new numbers at once. Does nothing for a
/// slot that is free already: no other UPS moves.
void free_ups(int slot);
