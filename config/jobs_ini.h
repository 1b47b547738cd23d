#pragma once

/// jobs.ini, what the service does about each event, and jobsSTS.ini, the state of these jobs. The
/// loaders read into `INI` and return 0, or 1 when the file cannot be opened; the writers write all
/// 30 sections and return 0 or errno.
int LoadJobsINI();
int LoadJobsSTSINI();
int SaveJobsINI();
int SaveJobsSTSINI();
