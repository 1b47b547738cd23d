#pragma once

/// The editor of one schedule entry, `index` 0 to 15, of the working copy. Its first item deletes
/// the entry and leaves; the others open choosers, which are left by choosing.
void sch_param(int index);
void print_sch_param(int selected, int index);
