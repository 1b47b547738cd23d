#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <vector>

/// A program that runs at a pseudo-terminal of 80x24. What goes wrong ends the benchmark with a
/// message.

/// What a program does between one wait for keys and the next.
struct Counts {
  std::size_t shown = 0;  // bytes that the terminal has got, the echo among them
  long written = 0;       // bytes of the program's own writes
  long writes = 0;
  long reads = 0;
  long calls = 0;  // of the system, those among them

  Counts& operator+=(const Counts& more);
};

struct Session {
  pid_t program = -1;  // -1 once it has ended by itself
  int terminal = -1;
  long call = -1;  // that it is in, while it is traced
};

[[noreturn]] void lose(const std::string& what);

/// Starts a program, looked up in the PATH. One that is `traced` runs in `follow` only.
Session start(const std::vector<std::string>& words, bool traced);

void type(const Session& session, const std::string& keys);

/// Reads until the terminal has got so many bytes.
void await(const Session& session, std::size_t wanted);

/// Lets the traced program run until it rests or has ended. A call counts when it returns: the one
/// that waits for keys counts for the key.
Counts follow(Session& session);

/// Types what makes the program leave and waits for its end; without keys, ends it by a signal.
void end(const Session& session, const std::string& leaving);
