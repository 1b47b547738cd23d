#include <cerrno>
#include <cstdio>
#include <cstring>

#include "tools/language_check.h"

namespace {

enum Status { fine, has_findings, cannot_check };

Status check(const char* path) {
  std::vector<Finding> findings;
  const int error = check_language(path, findings);
  if (error != 0) {
    std::fprintf(stderr, "check_language: %s: %s\n", path,
                 error == EINVAL ? "the program reads lang_00.ini to lang_31.ini only"
                                 : std::strerror(error));
    return cannot_check;
  }
  int faults = 0;
  for (const Finding& finding : findings) {
    std::printf("%s:%d: %s%s\n", path, finding.line, finding.remark ? "remark: " : "",
                finding.message.c_str());
    faults += finding.remark ? 0 : 1;
  }
  if (faults == 0) std::printf("%s: complete\n", path);
  return faults == 0 ? fine : has_findings;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2 || argv[1][0] == '-') {
    std::fputs("usage: check_language FILE...\n", stderr);
    return cannot_check;
  }
  Status worst = fine;
  for (int i = 1; i < argc; ++i) {
    const Status status = check(argv[i]);
    if (status > worst) worst = status;
  }
  return worst;
}
