#include <gtest/gtest.h>

#include <csignal>

#include "tests/operator.h"

namespace {

#ifndef __SANITIZE_ADDRESS__  // the sanitizers reserve more memory than there is
TEST(Start, SaysThatMemoryIsLow) {
  const Folder folder;
  int status = 128 + SIGSEGV;
  std::string output;
  // With too little the C library has none for itself, and a signal ends the program.
  for (int kib = 512; status > 128; kib += 64) {
    const std::string limits = "ulimit -c 0; ulimit -d " + std::to_string(kib);
    folder.write("limited", "#!/bin/sh\n" + limits + "; exec ./harrier\n");
    Operator op(folder, {.name = "./limited"});
    status = op.exit_status();
    output = op.output();
  }
  EXPECT_EQ(status, 4);
  EXPECT_EQ(output, "\r\n\rLow memory for strings !");
}
#endif

}  // namespace
