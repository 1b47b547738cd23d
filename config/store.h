#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "config/record.h"

/// 1 when `INI1` differed from `INI` as the main menu was left, otherwise 0. The main menu sets it.
/// The exit question clears it when the operator does not want to save.
extern std::int32_t DataChanged;

/// Makes `to` equal to `from`. Writes only pages that differ: most pages of a record are unused,
/// and a page that is never written takes no memory.
void copy_record(Record& to, const Record& from);

/// Clears `INI`, reads every file of the configuration into it and copies it to `INI1`. Returns 0,
/// or 1 when the main file cannot be opened or read to its end; then `INI1` stays as it is. Other
/// files may be missing.
int LoadINI();

/// Writes every file from `INI` as one unit. Returns 0 when all were written. After a failure it
/// prints the name of the writer with the error number, says where the files as they should be have
/// been put, and returns that number. A failure of writing replaces no file. A file that cannot be
/// opened or created keeps its contents, and so do the files after it. Signals that would end or
/// stop the program wait until it is over.
int SaveINI();

/// After `SaveINI`: a sentence for each file that somebody else had changed since it was read. Such
/// a file has been kept under another name.
std::span<const std::string> foreign_changes();
