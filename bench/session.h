#pragma once

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <vector>

/// Runs a program at a pseudo-terminal of 80x24. A failure prints a message and ends the benchmark.

/// What a program does between one wait for keys and the next.
struct Counts {
  std::size_t shown = 0;  // bytes that reached the terminal, including the echo
  long written = 0;       // bytes that the program wrote itself
  long writes = 0;
  long reads = 0;
  long calls = 0;  // all system calls, including the reads and writes

  Counts& operator+=(const Counts& more);
};

struct Session {
  pid_t program = -1;  // -1 once it has ended by itself
  int terminal = -1;
  long call = -1;  // number of the current system call, while the program is traced
};

/// Prints `what` and exits with status 1.
[[noreturn]] void lose(const std::string& what);

/// Starts a program, which is looked up in the PATH. A `traced` program runs only during `follow`.
Session start(const std::vector<std::string>& words, bool traced);

void type(const Session& session, const std::string& keys);

/// Reads until at least `wanted` bytes have arrived.
void await(const Session& session, std::size_t wanted);

/// Reads until the program has ended.
void await_end(const Session& session);

/// Lets the traced program run until it rests or has ended, and returns what it did. A call counts
/// when it returns, so the read that waits for a key counts for that key.
Counts follow(Session& session);

/// Types the keys `leaving`, waits for the end of the program and closes the terminal. Without keys
/// it kills the program.
void end(const Session& session, const std::string& leaving);
