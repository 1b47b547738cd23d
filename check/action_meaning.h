#pragma once

/// Whether the actions of jobs and of events have what they work with. Where the same is wrong with
/// several actions of a file, one finding counts them.

void check_programs();  // no_program, program_missing
void check_mail();      // no_mail
void check_sms();       // no_sms
