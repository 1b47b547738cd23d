#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string>
#include <string_view>

#include "command/command.h"
#include "command/escaped.h"
#include "lang/lang_text.h"
#include "lang/language_choice.h"
#include "merge/options.h"
#include "merge/renewal.h"
#include "tui/diag.h"

namespace {

/// The exit status when something is to be done, or left to the administrator.
constexpr int behind = 1;

/// The outcome for a file, as its line says it.
std::string outcome(const Renewal& renewal, bool done) {
  const std::string texts = renewal.texts == 0   ? "none of its texts"
                            : renewal.texts == 1 ? "1 text"
                                                 : std::to_string(renewal.texts) + " texts";
  switch (renewal.change) {
    case Change::none:
      return "up to date";
    case Change::copy:
      return done ? "copied" : "missing, would be copied";
    case Change::add:
      return done ? "[Harrier] added" : "[Harrier] would be added";
    case Change::renew:
      return std::string(done ? "[Harrier] renewed" : "[Harrier] would be renewed") + " (changes " +
             texts + ")";
    case Change::leave:
      return "left alone: " + renewal.reason;
  }
  return "";
}

bool is_change(const Renewal& renewal) {
  return renewal.change != Change::none && renewal.change != Change::leave;
}

int renew_file(const std::string& source, Renewal& renewal, bool apply) {
  if (plan(source, renewal) != 0) return trouble;
  if (apply && is_change(renewal) && carry_out(renewal) != 0) return trouble;
  put_out(escaped(renewal.path) + ": " + outcome(renewal, apply) + "\n");
  finish_output();  // at once: what has been done shall be known, whatever comes next
  const bool done = renewal.change == Change::none || (apply && is_change(renewal));
  return done ? good : behind;
}

/// Both folders end with a slash.
int renew_all(const std::string& from, const std::string& folder, bool apply) {
  const std::string main_file = folder + "kestrel.ini";
  // Language files in a folder that was named by mistake would help nobody.
  if (access(main_file.c_str(), F_OK) != 0) return fail(main_file + ": " + std::strerror(errno));
  int status = good;
  bool found = false;
  bool waiting = false;
  for (signed char language = 0; language < language_count; ++language) {
    const std::string name = language_file_name(harrier, language);
    if (access((from + name).c_str(), F_OK) != 0) continue;
    found = true;
    Renewal renewal{.path = folder + name, .model = main_file};
    status = std::max(status, renew_file(from + name, renewal, apply));
    waiting = waiting || (is_change(renewal) && !apply);
  }
  if (!found) return fail("no language file is in " + from + ": --from=FOLDER says where they are");
  if (waiting) complain("nothing has been changed; --apply does it");
  return status;
}

std::string with_slash(const std::string& folder) {
  return folder.ends_with('/') ? folder : folder + "/";
}

int run(int count, char* arguments[]) {
  Options options;
  if (read_options(count, arguments, options) != 0) return trouble;
  if (options.task == Task::help) {
    put_out(help_text);
    return good;
  }
  if (options.task == Task::version) {
    put_out("harrier-languages " HARRIER_VERSION "\n");
    return good;
  }
  char own[PATH_MAX];
  getprgdir(count > 0 ? arguments[0] : "", own, sizeof own);
  const std::string folder = options.folder.empty() ? own : with_slash(options.folder);
  return renew_all(with_slash(options.from), folder, options.task == Task::apply);
}

}  // namespace

int main(int count, char* arguments[]) {
  return run_command("harrier-languages", run, count, arguments);
}
