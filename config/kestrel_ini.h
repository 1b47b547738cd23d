#pragma once

/// kestrel.ini, the main file. Reads it into `INI`. Returns 0, or 1 when it cannot be opened or not
/// read to its end.
int LoadKestrelINI();

/// Writes it from `INI`, as `save_file` does. Returns 0 or errno.
int SaveKestrelINI();
