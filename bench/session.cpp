#include "bench/session.h"

#include <poll.h>
#include <pty.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace {

// A step shows its first byte within `patience`. It has finished when for `quiet` there was neither
// a system call nor output.
constexpr std::chrono::milliseconds patience(10000);
constexpr std::chrono::milliseconds quiet(200);

/// Reads once and returns the number of bytes, or 0 when the program has ended.
std::size_t show(const Session& session) {
  static char bytes[65536];
  const ssize_t got = read(session.terminal, bytes, sizeof bytes);
  return got > 0 ? static_cast<std::size_t>(got) : 0;
}

void note_call(Session& session, Counts& counts) {
  __ptrace_syscall_info info = {};
  ptrace(PTRACE_GET_SYSCALL_INFO, session.program, sizeof info, &info);
  if (info.op == PTRACE_SYSCALL_INFO_ENTRY) session.call = static_cast<long>(info.entry.nr);
  if (info.op != PTRACE_SYSCALL_INFO_EXIT) return;
  ++counts.calls;
  if (session.call == SYS_read) ++counts.reads;
  if (session.call == SYS_write) {
    ++counts.writes;
    counts.written += info.exit.rval;
  }
}

/// Called when the program has stopped or ended. Counts the reason and lets the program go on.
void note_stop(Session& session, int status, Counts& counts) {
  constexpr int call_stop = SIGTRAP | 0x80;
  if (!WIFSTOPPED(status)) {
    ++counts.calls;  // the exit, which does not return
    session.program = -1;
    return;
  }
  const int signal = WSTOPSIG(status);
  if (signal == call_stop) note_call(session, counts);
  const int passed_on = signal == SIGTRAP || signal == call_stop ? 0 : signal;
  ptrace(PTRACE_SYSCALL, session.program, nullptr, passed_on);
}

}  // namespace

Counts& Counts::operator+=(const Counts& more) {
  shown += more.shown;
  written += more.written;
  writes += more.writes;
  reads += more.reads;
  calls += more.calls;
  return *this;
}

void lose(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  std::exit(1);
}

Session start(const std::vector<std::string>& words, bool traced) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  const winsize size = {24, 80, 0, 0};
  Session session;
  session.program = forkpty(&session.terminal, nullptr, nullptr, &size);
  if (session.program == 0) {
    if (traced) ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  if (session.program < 0) lose("cannot open a terminal for " + words[0]);
  if (traced) {
    waitpid(session.program, nullptr, 0);  // the program stops after its exec
    constexpr int options = PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL;
    ptrace(PTRACE_SETOPTIONS, session.program, nullptr, options);
    ptrace(PTRACE_SYSCALL, session.program, nullptr, nullptr);
  }
  return session;
}

void type(const Session& session, const std::string& keys) {
  if (write(session.terminal, keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
    lose("cannot type the keys");
  }
}

void await(const Session& session, std::size_t wanted) {
  while (wanted > 0) {
    const std::size_t got = show(session);
    if (got == 0) lose("a program ended too early");
    wanted -= std::min(got, wanted);
  }
}

void await_end(const Session& session) {
  while (show(session) > 0) {
  }
}

Counts follow(Session& session) {
  using Clock = std::chrono::steady_clock;
  Counts counts;
  auto last = Clock::now();
  while (session.program >= 0 && Clock::now() - last < (counts.shown == 0 ? patience : quiet)) {
    int status = 0;
    if (waitpid(session.program, &status, WNOHANG) == session.program) {
      note_stop(session, status, counts);
      last = Clock::now();
    }
    pollfd output = {session.terminal, POLLIN, 0};
    while (poll(&output, 1, 0) > 0 && (output.revents & POLLIN) != 0) {
      counts.shown += show(session);
      last = Clock::now();
    }
  }
  return counts;
}

void end(const Session& session, const std::string& leaving) {
  if (session.program >= 0 && leaving.empty()) kill(session.program, SIGKILL);
  if (session.program >= 0 && !leaving.empty()) {
    type(session, leaving);
    await_end(session);
  }
  if (session.program >= 0) waitpid(session.program, nullptr, 0);
  close(session.terminal);
}
