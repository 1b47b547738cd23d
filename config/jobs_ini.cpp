#include "config/jobs_ini.h"

#include "config/ini_reader.h"
#include "config/ini_writer.h"
#include "tui/diag.h"

namespace {
constexpr char jobs_name[] = "jobs.ini";
constexpr char states_name[] = "jobsSTS.ini";
}  // namespace

int LoadJobsINI() { return EncodeINIFile(jobs_file, program_path(jobs_name).c_str()); }

int LoadJobsSTSINI() { return EncodeINIFile(job_states_file, program_path(states_name).c_str()); }

int SaveJobsINI() { return save_file(jobs_file, jobs_name); }

int SaveJobsSTSINI() { return save_file(job_states_file, states_name); }
