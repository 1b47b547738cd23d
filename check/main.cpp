#include <cstdio>
#include <string>

#include "check/check.h"
#include "check/finding.h"
#include "tui/format.h"

int main(int count, char* arguments[]) {
  const std::string last = arguments[count - 1];
  const std::string folder = count < 2 || last == "--quiet" ? "." : last;
  check_folder(folder, folder == "." ? "" : folder + "/");
  for (const Finding& finding : findings) {
    const ClassRow& row = row_of(finding.kind);
    std::puts(format("%s:%d: %s: %s [%s]", finding.file.c_str(), finding.line,
                     std::string(name_of(row.level)).c_str(), sentence_of(finding).c_str(),
                     name_of(row).c_str())
                  .c_str());
  }
  return count_of(Level::error) == 0 ? 0 : 1;
}
