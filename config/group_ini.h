#pragma once

/// group_00.ini to group_09.ini, a file for each group in use. Reads all ten into `INI`. Returns
/// the result for the last one: 0, or 1 when it cannot be opened or not read to its end.
int LoadGroupsINI();

/// Writes the groups in use from `INI` to the lowest file numbers. A group that is not in use
/// deletes the file that the next written group would get. Files of higher numbers stay, and the
/// next start loads them again. Returns 0, or the errno of the first file that could not be written
/// or deleted; the groups after it are not written.
int SaveGroupsINI();
