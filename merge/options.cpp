#include "merge/options.h"

#include <getopt.h>

#include "command/command.h"
#include "tui/format.h"

const std::string_view help_text =
    "usage: harrier-languages [--from=FOLDER] [--apply] [FOLDER]\n"
    "\n"
    "Puts Harrier's texts into the language files of Kestrel's FOLDER: adds or\n"
    "renews the section [Harrier], and leaves every byte of the other programs'\n"
    "sections alone. Copies a file that is missing. Without --apply, changes nothing\n"
    "and says what it would do. Without FOLDER, looks at the folder in which the\n"
    "program lies.\n"
    "\n"
    "  --apply        do it; a link stays, and the file that it leads to changes\n"
    "  --from=FOLDER  where Harrier's language files are, otherwise\n"
    "                 /usr/share/harrier/languages\n"
    "  --help         show this text\n"
    "  --version      show the version\n"
    "\n"
    "The exit status is 0 when all files are up to date, with --apply afterwards, 1\n"
    "when a file is to be changed or is left alone, and 2 when something failed.\n";

namespace {

/// Beyond all bytes, as `refuse_option` wants them.
enum Letter { apply = 256, from, help, version };

}  // namespace

int read_options(int count, char* arguments[], Options& options) {
  constexpr option known[] = {
      {"apply", no_argument, nullptr, apply},
      {"from", required_argument, nullptr, from},
      {"help", no_argument, nullptr, help},
      {"version", no_argument, nullptr, version},
      {nullptr, 0, nullptr, 0},
  };
  opterr = 0;
  for (int letter; (letter = getopt_long(count, arguments, ":", known, nullptr)) != -1;) {
    switch (letter) {
      case apply:
        options.task = Task::apply;
        break;
      case from:
        options.from = optarg;
        if (options.from.empty()) return refuse("--from needs a folder");
        break;
      case help:
        options.task = Task::help;
        return 0;
      case version:
        options.task = Task::version;
        return 0;
      default:
        return refuse_option(letter, arguments, "folder");
    }
  }
  if (count - optind > 1) {
    return refuse(format("\"%s\" is one word too many", arguments[optind + 1]));
  }
  if (optind < count) options.folder = arguments[optind];
  return 0;
}
