#pragma once

/// kestrel.ini, the main file. Reads it into `INI`; returns 0, or 1 when it cannot be opened.
int LoadKestrelINI();

/// Writes it from `INI`; returns 0 or errno.
int SaveKestrelINI();
