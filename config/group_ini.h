#pragma once

/// group_00.ini to group_09.ini, one file for each group in use. Reads all ten into `INI`; returns
/// the result for the last one, 0 or 1.
int LoadGroupsINI();

/// Writes the groups in use from `INI` to the lowest file numbers. Every group that is not in use
/// deletes the file that the next written group would get; files of higher numbers stay, and are
/// loaded again at the next start. Returns 0 or the errno of the first file that could not be
/// written or deleted; the groups after it are not written.
int SaveGroupsINI();
