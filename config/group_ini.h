#pragma once

#include <string>

#include "config/record.h"

/// group_00.ini to group_09.ini, a file for each group in use. Reads all ten into `INI`. Returns
/// the result for the last one: 0, or 1 when it cannot be opened or not read to its end.
int LoadGroupsINI();

/// Writes the groups in use from `INI` to the lowest file numbers. A group that is not in use
/// deletes the file that the next written group would get. Files of higher numbers stay, and the
/// next start loads them again. Returns 0, or the errno of the first file that could not be written
/// or deleted; the groups after it are not written.
int SaveGroupsINI();

/// Which files a save gives the groups of `INI`.
struct GroupFiles {
  int number[group_count];  // of the file of the group in each slot, -1 when it is not in use
  int deleted;              // the number of the file that goes, -1 for none
};

GroupFiles group_files_of_save();

/// The key that a save gives a member of a group: 0 for `UPS_00`, or -1 for a slot without one.
int saved_member(const Group& group, int slot);

/// The name of a group file.
std::string group_file_name(int number);
