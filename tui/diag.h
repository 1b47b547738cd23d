#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The folder of the program with its trailing slash. Every file is looked for there.
constexpr std::size_t program_dir_size = 256;
extern char ProgramDir[program_dir_size];

/// The path of the file `name` in that folder.
std::string program_path(std::string_view name);

/// Diagnostics go to the screen while `bDebug` is set, and to the file debugs.log beside the
/// program while `bDebugLog` is. The start-up sets both as the configuration says.
extern std::uint8_t bDebug;
extern std::uint8_t bDebugLog;

/// Prints a diagnostic to wherever the two flags say. A log that cannot be written is ignored.
void printfc(const char* text);

/// Shows a message of the file layer on the screen, whatever the flags say.
void report(const char* text);
