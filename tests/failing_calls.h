#pragma once

#include <functional>
#include <string>

/// Does `work` with a fault in its file operation number `at`, from 1; 0 is for none. An errno as
/// `kind` makes the operation fail with it, -SIGKILL ends the process there, and another signal with
/// a minus is sent before the operation goes on. A write that fails or is killed has written half of
/// its bytes. Returns the number of operations.
int with_fault(int at, int kind, const std::function<void()>& work);

/// What the last `work` did, in its order: "write fsync rename " replaces a file, "folder " flushes
/// a folder, "unlink " deletes a file.
extern std::string journal;
