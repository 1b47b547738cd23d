#pragma once

#include <csignal>

/// Makes every signal wait while files are being replaced. Ignores the two signals of a failing
/// write (past the size limit, or into a pipe that nobody reads): such a write returns its errno.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    // These two are ignored below. Were they blocked too, they would arrive when the block ends.
    sigdelset(&all, SIGXFSZ);
    sigdelset(&all, SIGPIPE);
    sigprocmask(SIG_BLOCK, &all, &mask_);
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignore, &too_long_);
    sigaction(SIGPIPE, &ignore, &broken_pipe_);
  }
  ~SignalsHeld() {
    sigaction(SIGPIPE, &broken_pipe_, nullptr);
    sigaction(SIGXFSZ, &too_long_, nullptr);
    sigprocmask(SIG_SETMASK, &mask_, nullptr);
  }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t mask_;
  struct sigaction too_long_;
  struct sigaction broken_pipe_;
};
