#pragma once

#include <functional>
#include <string>
#include <string_view>

/// A file operation that is about to happen.
struct Call {
  std::string_view name;   // of the function
  std::string path;        // of the file, also where the function gets a descriptor
  std::string other;       // the second path of `rename` and `link`
  std::string_view bytes;  // to be written
};

/// Does `work` and calls `watch` before each of its file operations. 0 lets the operation pass and
/// an errno makes it fail. -SIGKILL ends the process there; another signal with a minus is sent,
/// and the operation goes on. A write that fails or is killed has written half of its bytes.
void with_calls(const std::function<int(const Call&)>& watch, const std::function<void()>& work);

/// Does `work` with a fault of this kind in its file operation number `at`, from 1; 0 is for none.
/// Returns the number of operations.
int with_fault(int at, int kind, const std::function<void()>& work);
