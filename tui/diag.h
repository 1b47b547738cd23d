#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The folder of the program, with a trailing slash. The program looks for every file there.
constexpr std::size_t program_dir_size = 256;
extern char ProgramDir[program_dir_size];

/// Fills `dir` with the folder part of `path` and a slash: "./" for a bare name. Cuts a long path,
/// so that `size` bytes hold the result with its terminator.
void getprgdir(const char* path, char* dir, std::size_t size);

/// The path of the file `name` in that folder.
std::string program_path(std::string_view name);

/// While `bDebug` is set, diagnostics go to the screen. While `bDebugLog` is set, they go to the
/// file debugs.log beside the program. The start-up sets both from the configuration.
extern std::uint8_t bDebug;
extern std::uint8_t bDebugLog;

/// Prints a diagnostic where the two flags say. Ignores a log that cannot be written, and never
/// waits for the reader of a log that is a named pipe.
void printfc(const char* text);

/// Shows a message of the file layer on the screen, whatever the flags say.
void report(const char* text);
