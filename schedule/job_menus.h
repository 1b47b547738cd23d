#pragma once

#include <cstdint>

/// The screens of the jobs. Events are numbered from 0, and so are actions (0 to 7).

/// The menu of the jobs: the switch for all of them, the lists, the defaults, the shutdown script.
void jobs_param();
void print_jobs_param(int selected);

/// Asks whether to edit the shutdown script, ups_shut.scr in the working directory.
void jobs_param1();

/// The list of the jobs of the events `first` to `last`.
void jobs_param2(int first, int last);
void print_job_param2(int selected, int first, int last);

/// The job of one event.
void job_param(int event);
void print_job_param(int selected, int event);

/// The editor of one action of a job.
void job_param1(int event, int action);
void print_job_param1(int selected, int event, int action, std::uint16_t flag, std::uint16_t delay,
                      std::uint16_t interval);
