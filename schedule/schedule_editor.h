#pragma once

/// The editor of a schedule entry of the working copy, `index` 0 to 15. Its first item deletes the
/// entry and leaves. The others open choosers, which the operator leaves by choosing.
void sch_param(int index);
void print_sch_param(int selected, int index);
