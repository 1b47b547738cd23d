#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "check/ask.h"
#include "check/check.h"
#include "check/explain.h"
#include "check/finding.h"
#include "check/json_report.h"
#include "check/options.h"
#include "check/text_report.h"
#include "command/command.h"
#include "tui/diag.h"

namespace {

/// The exit status after findings, or to stop.
constexpr int bad = 1;

bool is_folder(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

/// The folder in which the program lies, by the rule of the editor.
std::string own_folder(const char* program) {
  char folder[PATH_MAX];
  getprgdir(program, folder, sizeof folder);
  std::string name = folder;
  if (name.size() > 1) name.pop_back();
  return name;
}

/// What precedes the names of files in a folder.
std::string prefix_of(const std::string& folder) {
  if (folder == ".") return "";
  return folder.ends_with('/') ? folder : folder + "/";
}

int check_the_folder(const std::string& folder) {
  const int error = check_folder(folder, prefix_of(folder));
  if (error == 0) return good;
  return fail(error == ENOENT ? "there is no file of the service in " + folder
                              : folder + ": " + std::strerror(error));
}

int check_the_file(const std::string& path, const Options& options) {
  const bool piped = path == "-";
  if (piped && options.as.empty()) return fail("standard input needs --as=NAME");
  struct stat info;
  if (!piped && stat(path.c_str(), &info) != 0) return fail(path + ": " + std::strerror(errno));
  const std::string own_name = path.substr(path.rfind('/') + 1);
  const std::string name = options.as.empty() ? own_name : options.as;
  const int error = check_file(path, name, piped ? "<stdin>" : path);
  if (error == 0) return good;
  if (error != EINVAL) return fail(path + ": " + std::strerror(error));
  return fail("no file of the service is called \"" + name +
              "\": say by --as=NAME whether to take the file for kestrel.ini, jobs.ini, "
              "jobsSTS.ini, group_00.ini to group_09.ini, sensor.ini, lang_00.ini to "
              "lang_31.ini or a profile");
}

/// Each on its own. What one of them is missing does not keep the others from being checked.
int check_each(const Options& options, bool& checked) {
  std::vector<Finding> all;
  int status = good;
  for (const std::string& path : options.places) {
    findings.clear();
    const int own = is_folder(path) ? fail(path + " is a folder, which is checked alone")
                                    : check_the_file(path, options);
    checked = checked || own == good;
    status = std::max(status, own);
    std::move(findings.begin(), findings.end(), std::back_inserter(all));
  }
  findings.swap(all);
  sort_findings();
  return status;
}

void put_report(const Options& options, const std::string& folder) {
  if (options.json) return put_json(folder);
  const bool colours = has_colours(stdout);
  for (const Finding& finding : findings) put_out(text_of(finding, colours));
}

int check(const Options& options, const std::string& own) {
  std::string folder = options.places.empty() ? own : "";
  if (options.places.size() == 1 && is_folder(options.places[0])) folder = options.places[0];
  if (!folder.empty() && !options.as.empty()) {
    return fail("--as is for a FILE, and \"" + folder + "\" is a folder");
  }
  bool checked = false;
  int status = good;
  if (folder.empty()) {
    status = check_each(options, checked);
  } else {
    status = check_the_folder(folder);
    checked = status == good;
  }
  if (!checked) return trouble;
  put_report(options, folder);
  if (finish_output() == 0 && !options.json && !options.quiet) {
    std::fprintf(stderr, "%s\n", text_of_counts().c_str());
  }
  const bool found = count_of(Level::error) > 0 || (options.strict && count_of(Level::warning) > 0);
  return std::max(status, found ? bad : good);
}

/// What cannot be checked is no reason to stop: the editor says what is wrong.
int ask(const Options& options, const std::string& own, const std::string& program) {
  if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0) return good;
  const std::string folder = options.places.empty() ? own : options.places[0];
  const int error = check_folder(folder, prefix_of(folder));
  if (error == ENOTDIR) return fail("--ask goes with a FOLDER only");
  if (error != 0) return good;
  return ask_before_edit(program + " " + folder) ? good : bad;
}

int run(int count, char* arguments[]) {
  Options options;
  if (read_options(count, arguments, options) != 0) return trouble;
  const std::string program = count > 0 ? arguments[0] : "";
  const std::string own = own_folder(program.c_str());
  switch (options.task) {
    case Task::check:
      return check(options, own);
    case Task::ask:
      return ask(options, own, program);
    case Task::explain:
      return put_explanation(options.explained) == 0 ? good : trouble;
    case Task::list:
      put_list();
      return good;
    case Task::help:
      put_out(help_text);
      return good;
    case Task::version:
      put_out("harrier-check " HARRIER_VERSION "\n");
      return good;
  }
  return trouble;
}

}  // namespace

int main(int count, char* arguments[]) {
  return run_command("harrier-check", run, count, arguments);
}
