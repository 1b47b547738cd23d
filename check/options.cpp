#include "check/options.h"

#include <getopt.h>

#include <string>

#include "command/command.h"

const std::string_view help_text =
    "usage: harrier-check [OPTION...] [FOLDER | FILE...]\n"
    "\n"
    "Says what Kestrel and Harrier do not take from the files of a configuration as\n"
    "it stands there, and what the next save of Harrier drops or moves. Changes\n"
    "nothing. Without an argument, checks the folder in which the program lies.\n"
    "\n"
    "  --as=NAME        take each FILE for the file NAME of the service, such as\n"
    "                   kestrel.ini, or for a group profile with --as=profile;\n"
    "                   the FILE \"-\" is standard input\n"
    "  --format=FORMAT  text, a finding a line, or json, one object\n"
    "  --strict         warnings count for the exit status, as errors do\n"
    "  --quiet          no line of counts on standard error\n"
    "  --ask            at a terminal, when a save would lose something: show at\n"
    "                   most ten findings, and ask whether to edit all the same\n"
    "  --explain CLASS  explain a class of findings\n"
    "  --list           list all classes\n"
    "  --help           show this text\n"
    "  --version        show the version\n"
    "\n"
    "The exit status is 0 without errors, 1 with errors, and 2 when something could\n"
    "not be checked. With --ask it is 0 to go on and 1 to stop.\n"
    "\n"
    "harrier-check(8) tells how a finding looks, --explain what it means.\n";

namespace {

/// Beyond all bytes, as `refuse_option` wants them.
enum Letter { as = 256, ask, explain, format, help, list, quiet, strict, version };

/// Whether the options go together.
int examine(const Options& options) {
  const bool checks = options.task == Task::check || options.task == Task::ask;
  if (!checks && !options.places.empty()) {
    return refuse("\"" + options.places[0] + "\" is one word too many");
  }
  const bool more = options.json || options.strict || options.quiet || !options.as.empty() ||
                    options.places.size() > 1;
  if (options.task == Task::ask && more) return refuse("--ask goes with a FOLDER only");
  if (!options.as.empty() && options.places.empty()) return refuse("--as needs a FILE");
  return 0;
}

}  // namespace

int read_options(int count, char* arguments[], Options& options) {
  constexpr option known[] = {
      {"as", required_argument, nullptr, as},
      {"ask", no_argument, nullptr, ask},
      {"explain", required_argument, nullptr, explain},
      {"format", required_argument, nullptr, format},
      {"help", no_argument, nullptr, help},
      {"list", no_argument, nullptr, list},
      {"quiet", no_argument, nullptr, quiet},
      {"strict", no_argument, nullptr, strict},
      {"version", no_argument, nullptr, version},
      {nullptr, 0, nullptr, 0},
  };
  opterr = 0;
  for (int letter; (letter = getopt_long(count, arguments, ":", known, nullptr)) != -1;) {
    const std::string value = optarg == nullptr ? "" : optarg;
    switch (letter) {
      case as:
        options.as = value;
        if (value.empty()) return refuse("--as needs a name");
        break;
      case explain:
        options.task = Task::explain;
        options.explained = value;
        break;
      case format:
        if (value != "text" && value != "json") {
          return refuse("there is no format \"" + value + "\", only text and json");
        }
        options.json = value == "json";
        break;
      case ask:
        options.task = Task::ask;
        break;
      case help:
        options.task = Task::help;
        return 0;
      case list:
        options.task = Task::list;
        break;
      case quiet:
        options.quiet = true;
        break;
      case strict:
        options.strict = true;
        break;
      case version:
        options.task = Task::version;
        break;
      default:
        return refuse_option(letter, arguments, "value");
    }
  }
  options.places.assign(arguments + optind, arguments + count);
  return examine(options);
}
