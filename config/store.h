#pragma once

#include <cstdint>

#include "config/record.h"

/// 1 when the main menu was left with `INI1` unlike `INI`, otherwise 0. The main menu sets it, and
/// the exit question clears it when the operator declines to save.
extern std::int32_t DataChanged;

/// Makes `to` equal to `from`. Memory that is equal already is not written, so that the many pages
/// of the record which no configuration uses never take any.
void copy_record(Record& to, const Record& from);

/// Clears `INI`, reads every file of the configuration into it and copies it to `INI1`. Returns 0,
/// or 1 when the main file cannot be opened; the other files may be missing.
int LoadINI();

/// Writes every file from `INI`. At the first one that fails, prints which, with the error number,
/// and returns that number; the files after it keep their old contents. Returns 0 when all were
/// written. Signals that would end or stop the program wait until it is over.
int SaveINI();
