#pragma once

#include <string>

/// Programs that the configuration names. Only those in `ProgramDir` are looked at: whatever the
/// files say, nothing outside is touched, not even through a symbolic link.

/// What is wrong with the program that a command line begins with, such as "is not there". Empty
/// when nothing is wrong, and when it is not certain: the program is not in the folder, or the
/// command holds characters that a shell would take for something else.
std::string fault_of_command(const std::string& command);

/// The same for ups_shut.scr. It belongs to the folder, so it may be a symbolic link.
std::string fault_of_script();
