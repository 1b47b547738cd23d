#pragma once

/// Fills `INI` with the largest configuration: every entry of every list in use, every text of a
/// usual length. `SaveINI` then writes 14 files with about 28,000 lines in all.
void fill_record();
