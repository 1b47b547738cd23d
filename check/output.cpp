#include "check/output.h"

#include <cerrno>
#include <cstdio>

#include "check/finding.h"

namespace {
int first_error = 0;
}

void put_out(std::string_view text) {
  // Not line by line, at a terminal either: a long list would take most of the time.
  static const int buffered = std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
  (void)buffered;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && first_error == 0) {
    first_error = errno;
  }
}

int finish_output() {
  if (std::fflush(stdout) != 0 && first_error == 0) first_error = errno;
  return first_error;
}

void complain(const std::string& sentence) {
  std::fprintf(stderr, "harrier-check: %s\n", escaped(sentence).c_str());
}
