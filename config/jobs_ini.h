#pragma once

/// jobs.ini, what the service does about each event, and jobsSTS.ini, the state of these jobs. The
/// loaders read the file into `INI` and return 0, or 1 when it cannot be opened. The writers write
/// all 30 sections from `INI` and return 0 or errno.
int LoadJobsINI();
int LoadJobsSTSINI();
int SaveJobsINI();
int SaveJobsSTSINI();
