// Compares Harrier at a terminal with other programs: the time from a key until its effect has been
// read, the bytes and system calls for it, the memory, and the wake-ups while nobody types.
// Prints a line for each step: name, nanoseconds, bytes written, writes, reads and system calls.
// Memory and wake-ups are lines of a name and a number. `bench/run` makes a table of all lines.

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "bench/largest.h"
#include "bench/session.h"
#include "config/store.h"
#include "tui/diag.h"

namespace {

struct Step {
  std::string name;  // empty for a step that is not measured
  std::string keys;
  Counts counts = {};
};

/// A run of a program.
struct Visit {
  std::string name;
  std::vector<std::string> words;
  std::vector<Step> steps;
  std::string leaving = {};  // keys that end the program; without them its end is not measured
  bool ends = false;         // by itself, after its last step
  Counts whole = {};
  std::map<std::string, std::vector<double>> times = {};  // of each step, in nanoseconds
};

/// Runs the visit once under trace and sets the counts of each step and of the whole.
void count(Visit& visit) {
  Session session = start(visit.words, true);
  visit.whole.calls = 1;  // the exec
  for (Step& step : visit.steps) {
    type(session, step.keys);
    step.counts = follow(session);
    if (step.counts.shown == 0) lose(visit.name + " does not react");
    visit.whole += step.counts;
  }
  visit.ends = session.program < 0;
  if (!visit.leaving.empty()) {
    type(session, visit.leaving);
    visit.whole += follow(session);
    if (session.program >= 0) lose(visit.name + " does not end");
  }
  end(session, "");
}

/// Waits until a step has shown all it shows.
void await_effect(const Session& session, const Visit& visit, const Step& step) {
  if (visit.ends && &step == &visit.steps.back())
    await_end(session);
  else
    await(session, step.counts.shown);
}

// --- Timing -------------------------------------------------------------------------------------

using Clock = std::chrono::steady_clock;

double since(Clock::time_point begin) {
  return std::chrono::duration<double, std::nano>(Clock::now() - begin).count();
}

/// Runs the visit once and notes the times. The first step and "exit" count from the start of the
/// program.
void take_time(Visit& visit) {
  const auto begin = Clock::now();
  auto typed = begin;
  const Session session = start(visit.words, false);
  for (const Step& step : visit.steps) {
    type(session, step.keys);
    await_effect(session, visit, step);
    visit.times[step.name].push_back(since(typed));
    typed = Clock::now();
  }
  end(session, visit.leaving);
  visit.times["exit"].push_back(since(begin));
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void print_step(const Visit& visit, const std::string& name, const Counts& counts) {
  std::printf("%s/%s %.0f %ld %ld %ld %ld\n", visit.name.c_str(), name.c_str(),
              median(visit.times.at(name)), counts.written, counts.writes, counts.reads,
              counts.calls);
}

void print_steps(const Visit& visit) {
  std::map<std::string, Counts> last;
  for (const Step& step : visit.steps) last[step.name] = step.counts;
  for (const auto& [name, counts] : last) {
    if (!name.empty()) print_step(visit, name, counts);
  }
  if (!visit.leaving.empty()) print_step(visit, "exit", visit.whole);
}

// --- Resting ------------------------------------------------------------------------------------

/// Returns the sum of the numbers in the lines of /proc/PID/`file` whose names contain `key`.
long proc_value(const Session& session, const std::string& file, const std::string& key) {
  std::ifstream in("/proc/" + std::to_string(session.program) + "/" + file);
  long sum = 0;
  for (std::string line; std::getline(in, line);) {
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos || line.substr(0, colon).find(key) == std::string::npos)
      continue;
    sum += std::atol(line.c_str() + colon + 1);
  }
  return sum;
}

/// Returns the most memory that a program has used which ends now, in KiB, or what it had as a copy
/// of this one.
long most_resident(Session& session) {
  rusage usage = {};
  wait4(session.program, nullptr, 0, &usage);
  session.program = -1;
  return usage.ru_maxrss;
}

/// Returns how often the program wakes up in two seconds without keys. A timer, or a wait with a
/// time limit, would show here.
long wakeups(const Session& session) {
  constexpr useconds_t settling = 60000;
  constexpr int idle_seconds = 2;
  usleep(settling);
  const long before = proc_value(session, "status", "ctxt_switches");
  sleep(idle_seconds);
  return proc_value(session, "status", "ctxt_switches") - before;
}

/// Prints the memory in use after the last step, or the most of a program that has ended, and, when
/// `idle`, the wake-ups on all measured screens.
void print_rest(const Visit& visit, bool idle) {
  Session session = start(visit.words, false);
  long woken = 0;
  std::string rested;
  for (const Step& step : visit.steps) {
    type(session, step.keys);
    await_effect(session, visit, step);
    if (!idle || step.name.empty() || step.name == rested) continue;
    woken += wakeups(session);
    rested = step.name;
  }
  const long resident =
      visit.ends ? most_resident(session) : proc_value(session, "smaps_rollup", "Rss");
  std::printf("%s/resident %ld\n", visit.name.c_str(), resident);
  if (idle) std::printf("%s/wakeups %ld\n", visit.name.c_str(), woken);
  end(session, visit.leaving);
}

// --- The visits ---------------------------------------------------------------------------------

std::string repeated(int count, const std::string& keys) {
  std::string all;
  for (int i = 0; i < count; ++i) all += keys;
  return all;
}

const std::string up = "\033[A";
const std::string down = "\033[B";
const std::string enter = "\r";

std::vector<std::string> menu_of(const char* program) {
  return {program, "--menu", "Menu", "20",   "70", "7",    "1", "one", "2", "two",
          "3",     "three",  "4",    "four", "5",  "five", "6", "six", "7", "seven"};
}

/// The first screen, then single arrow keys and a burst of them.
std::vector<Step> arrow_steps() {
  std::vector<Step> steps = {{"", ""}};
  constexpr int moves = 5;
  for (int i = 0; i < moves; ++i) steps.insert(steps.end(), {{"move", down}, {"move", up}});
  steps.push_back({"burst", repeated(100, down + up)});
  return steps;
}

/// The arrow keys, then a menu, an editor in it, and the upcoming actions. The arrow stops at item
/// 0, so many Downs lead there.
std::vector<Step> tour_steps() {
  std::vector<Step> steps = arrow_steps();
  steps.insert(steps.end(), {{"menu", enter},
                             {"field", enter},
                             {"", enter},
                             {"", repeated(20, down) + enter},
                             {"", repeated(3, down) + enter},
                             {"", repeated(20, down) + up},
                             {"upcoming", enter}});
  return steps;
}

void save_largest(const std::string& folder) {
  std::snprintf(ProgramDir, sizeof ProgramDir, "%s/", folder.c_str());
  fill_record();
  if (SaveINI() != 0) lose("cannot save the largest configuration in " + folder);
}

}  // namespace

/// Usage: terminal_bench DEMO LARGEST CHECK MINIMAL RUNS. DEMO and LARGEST are folders with the
/// program and its language files; DEMO also holds a configuration, and LARGEST gets one. CHECK is
/// the program that checks a folder, MINIMAL the minimal program. RUNS is how often each visit is
/// timed.
int main(int argc, char* argv[]) {
  if (argc != 6) return 2;
  const std::string demo = argv[1] + std::string("/harrier");
  const std::string largest = argv[2] + std::string("/harrier");
  setenv("TERM", "xterm", 1);
  save_largest(argv[2]);
  const std::string leave = repeated(5, down) + enter;
  Visit visits[] = {
      {"harrier", {demo}, {{"start", ""}}, leave},
      {"largest", {largest}, {{"start", ""}}, leave},
      {"check", {argv[3], argv[2]}, {{"whole", ""}}},
      {"minimal", {argv[4]}, {{"start", ""}}, enter},
      {"dialog", menu_of("dialog"), {{"start", ""}}, enter},
      {"whiptail", menu_of("whiptail"), {{"start", ""}}, enter},
      {"tour", {demo}, tour_steps()},
      {"minimal_tour", {argv[4]}, arrow_steps()},
  };
  for (Visit& visit : visits) count(visit);
  for (int run = 0; run < std::atoi(argv[5]); ++run) {
    for (Visit& visit : visits) take_time(visit);
  }
  for (const Visit& visit : visits) {
    print_steps(visit);
    print_rest(visit, visit.name == "tour");
  }
  return 0;
}
