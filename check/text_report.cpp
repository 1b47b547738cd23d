#include "check/text_report.h"

#include <unistd.h>

#include <cstdlib>

#include "command/escaped.h"
#include "tui/format.h"

namespace {

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

/// ECMA-48, select graphic rendition.
const char* colour_of(Level level) {
  if (level == Level::error) return "\033[1;31m";
  return level == Level::warning ? "\033[1;33m" : "\033[1;36m";
}

std::string counted(Level level) {
  const int count = count_of(level);
  const std::string name(name_of(level));
  if (count == 0) return "no " + name + "s";
  return format("%d %s%s", count, name.c_str(), count == 1 ? "" : "s");
}

}  // namespace

bool has_colours(std::FILE* stream) {
  const std::string terminal = variable("TERM");
  return variable("NO_COLOR").empty() && !terminal.empty() && terminal != "dumb" &&
         isatty(fileno(stream)) != 0;
}

std::string text_of(const Finding& finding, bool colours) {
  const ClassRow& row = row_of(finding.kind);
  const char* const bold = colours ? "\033[1m" : "";
  const char* const colour = colours ? colour_of(row.level) : "";
  const char* const plain = colours ? "\033[0m" : "";
  return format("%s%s:%d:%s %s%s:%s %s [%s]\n", bold, escaped(finding.file).c_str(), finding.line,
                plain, colour, std::string(name_of(row.level)).c_str(), plain,
                sentence_of(finding).c_str(), name_of(row).c_str());
}

std::string text_of_counts() {
  if (findings.empty()) return "nothing found";
  return counted(Level::error) + ", " + counted(Level::warning) + ", " + counted(Level::note);
}
