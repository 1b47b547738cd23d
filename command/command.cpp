#include "command/command.h"

#include <getopt.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <new>

#include "command/escaped.h"

namespace {

const char* command_name = "";
int first_error = 0;  // of standard output

}  // namespace

int run_command(const char* name, int (*run)(int count, char* arguments[]), int count,
                char* arguments[]) {
  command_name = name;
  // A reader that leaves shall be heard of by an error, like a full disk.
  std::signal(SIGPIPE, SIG_IGN);
  // Not line by line, at a terminal either: a long list would take most of the time.
  std::setvbuf(stdout, nullptr, _IOFBF, BUFSIZ);
  try {
    const int status = run(count, arguments);
    const int error = finish_output();
    return error == 0 ? status : fail(std::string("standard output: ") + std::strerror(error));
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "%s: there is not enough memory\n", command_name);
    return trouble;
  }
}

void put_out(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() && first_error == 0) {
    first_error = errno;
  }
}

int finish_output() {
  if (std::fflush(stdout) != 0 && first_error == 0) first_error = errno;
  return first_error;
}

void complain(std::string_view sentence) {
  finish_output();
  std::fprintf(stderr, "%s: %s\n", command_name, escaped(sentence).c_str());
}

int fail(std::string_view sentence) {
  complain(sentence);
  return trouble;
}

int refuse(std::string_view sentence) {
  complain(std::string(sentence) + ". See " + command_name + " --help");
  return EINVAL;
}

int refuse_option(int letter, char* arguments[], std::string_view value) {
  const bool is_short = optopt > 0 && optopt <= UCHAR_MAX;
  const std::string word =
      is_short ? std::string("-") + static_cast<char>(optopt) : arguments[optind - 1];
  if (letter == ':') return refuse(word + " needs a " + std::string(value));
  return refuse("there is no option " + word);
}
