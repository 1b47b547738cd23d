#include "tui/diag.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <cstring>

#include "tui/terminal.h"

char ProgramDir[program_dir_size];
std::uint8_t bDebug = 0;
std::uint8_t bDebugLog = 0;

void getprgdir(const char* path, char* dir, std::size_t size) {
  const std::string_view whole(path);
  const std::size_t slash = whole.rfind('/');
  const std::string_view folder = slash == std::string_view::npos ? "." : whole.substr(0, slash);
  const std::size_t length = folder.copy(dir, size - 2);
  dir[length] = '/';
  dir[length + 1] = '\0';
}

std::string program_path(std::string_view name) { return std::string(ProgramDir).append(name); }

void report(const char* text) { print("%s", text); }

void printfc(const char* text) {
  if (bDebug != 0) report(text);
  if (bDebugLog == 0) return;
  const std::string path = program_path("debugs.log");
  // With O_NONBLOCK a named pipe without a reader does not stop us, nor does a full one.
  constexpr int flags = O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  const int log = open(path.c_str(), flags, 0666);
  if (log < 0) return;
  // The reader of a pipe may have left since.
  struct sigaction ignore = {};
  struct sigaction before = {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &before);
  struct sigaction before_limit = {};
  sigaction(SIGXFSZ, &ignore, &before_limit);
  // A diagnostic that cannot be written is lost on purpose: there is nowhere left to report it.
  [[maybe_unused]] const ssize_t written = write(log, text, std::strlen(text));
  sigaction(SIGPIPE, &before, nullptr);
  sigaction(SIGXFSZ, &before_limit, nullptr);
  close(log);
}
