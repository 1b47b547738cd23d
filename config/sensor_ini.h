#pragma once

/// sensor.ini, the environment sensors. Reads it into `INI`. Returns 0, or 1 when it cannot be
/// opened.
int LoadSensorINI();

/// Writes all 32 sections from `INI`. Returns 0 or errno.
int SaveSensorINI();
