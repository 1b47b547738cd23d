#include <getopt.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "lang/text_places.h"
#include "tools/language_check.h"
#include "tui/format.h"

namespace {

enum Status { fine, has_findings, cannot_check };

constexpr const char* usage =
    "usage: check_language FILE...\n"
    "       check_language --list\n";

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

/// What the columns of a place are for besides the text itself.
std::string beside(const text::Place& place) {
  constexpr const char* either = ", together with text %d or %d";
  switch (place.beside) {
    case text::Beside::nothing:
      break;
    case text::Beside::yes_or_no:
      return format(either, text::yes, text::no);
    case text::Beside::on_or_off:
      return format(either, text::flag_on, text::flag_off);
    case text::Beside::enter_time:
      return format(", together with text %d", text::enter_time);
    case text::Beside::answers:
      return format(", together with texts %d and %d", text::yes, text::no);
  }
  return "";
}

/// Prints a line for each text of the program, by number.
void list_texts() {
  std::puts("text  columns  name                          place");
  for (int number = 0; number <= text::last_used; ++number) {
    const text::Row* const row = text::find_row(number);
    if (row == nullptr) continue;
    const text::Place& place = *row->place;
    const std::string columns = place.columns == 0 ? "-" : std::to_string(place.columns);
    std::printf("%4d  %7s  %-28s  %s%s%s\n", number, columns.c_str(), row->name, place.what,
                beside(place).c_str(), place.stored ? "; no double quotes" : "");
  }
}

int refuse() {
  std::fputs(usage, stderr);
  return cannot_check;
}

}  // namespace

int main(int argc, char** argv) {
  const option options[] = {{"help", no_argument, nullptr, 'h'},
                            {"list", no_argument, nullptr, 'l'},
                            {nullptr, 0, nullptr, 0}};
  bool list = false;
  for (int c; (c = getopt_long(argc, argv, "h", options, nullptr)) != -1;) {
    if (c == 'h') {
      std::fputs(usage, stdout);
      return fine;
    }
    if (c != 'l') return refuse();
    list = true;
  }
  const bool files = optind < argc;
  if (list == files) return refuse();
  if (list) list_texts();
  Status worst = fine;
  for (int i = optind; i < argc; ++i) {
    const Status status = check(argv[i]);
    if (status > worst) worst = status;
  }
  return worst;
}
