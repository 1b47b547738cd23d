#pragma once

#include <csignal>

/// Keeps every signal waiting while files are being replaced. A write past the size limit or into a
/// pipe that nobody reads fails with its error number, without a signal that would end the program.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    sigdelset(&all, SIGXFSZ);  // what is held back as well as ignored would come afterwards
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
