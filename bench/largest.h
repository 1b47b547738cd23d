#pragma once

/// The largest configuration: every entry of every list in use, every text of a usual length.
/// `SaveINI` makes 14 files of it, of some 28,000 lines.
void fill_record();
