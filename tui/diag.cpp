#include "tui/diag.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#include "tui/terminal.h"

char ProgramDir[program_dir_size];
std::uint8_t bDebug = 0;
std::uint8_t bDebugLog = 0;

std::string program_path(std::string_view name) { return std::string(ProgramDir).append(name); }

void report(const char* text) { print("%s", text); }

void printfc(const char* text) {
  if (bDebug != 0) report(text);
  if (bDebugLog == 0) return;
  const std::string path = program_path("debugs.log");
  const int log = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0666);
  if (log < 0) return;
  // A diagnostic that cannot be written is lost on purpose: there is nowhere left to report it.
  [[maybe_unused]] const ssize_t written = write(log, text, std::strlen(text));
  close(log);
}
