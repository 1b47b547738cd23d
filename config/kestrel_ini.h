#pragma once

/// kestrel.ini, the main file. Reads it into `INI`. Returns 0, or 1 when it cannot be opened.
int LoadKestrelINI();

/// Writes it from `INI`. Returns 0 or errno.
int SaveKestrelINI();
