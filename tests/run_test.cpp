#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "tests/operator.h"
#include "tests/tables.h"

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

TEST(Run, SavesOnYesAlone) {
  for (const char* answer : {"y", "Yes", "\r \r\t y", "yellow fever", "n", "x", "1", "ny"}) {
    SCOPED_TRACE(readable(answer));
    const Folder folder;
    const Folder::Files before = folder.files();
    Operator op(folder, {.name = "harrier"});  // looked up in the PATH
    op.open("1/1");
    op.type("Attic\r");
    const bool saves = op.quit(answer) == 1;
    EXPECT_EQ(saves, std::string("yY\r").find(answer[0]) != std::string::npos);
    EXPECT_EQ(op.output().find(english("$saved")) != std::string::npos, saves);
    EXPECT_EQ(folder.value("kestrel.ini", "System", "Name") == "\"Attic\"", saves);
    EXPECT_EQ(folder.files() == before, !saves);
  }
}

}  // namespace
