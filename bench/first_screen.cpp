// Times whole runs at a pseudo-terminal: from the start to the first screen, and to the exit that
// one key (or a few) asks for. The commands take turns, so that a noisy machine disturbs them
// alike; what is printed are medians.

#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Command {
  const char* name;
  std::vector<const char*> words;
  std::string wanted;                  // what the first screen ends with
  std::string keys;                    // what leaves it
  std::vector<double> first_screen{};  // milliseconds
  std::vector<double> whole{};
  long resident = 0;  // KiB
};

double since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

void run_once(Command& command) {
  const winsize size = {24, 80, 0, 0};
  std::vector<char*> words;
  for (const char* word : command.words) words.push_back(const_cast<char*>(word));
  words.push_back(nullptr);

  const auto start = std::chrono::steady_clock::now();
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, &size);
  if (child == 0) {
    execvp(words[0], words.data());
    _exit(127);
  }
  std::string seen;
  char bytes[65536];
  while (seen.find(command.wanted) == std::string::npos) {
    const ssize_t got = read(terminal, bytes, sizeof bytes);
    if (got <= 0) {
      std::fprintf(stderr, "%s ended before its first screen\n", command.name);
      std::exit(1);
    }
    seen.append(bytes, static_cast<std::size_t>(got));
  }
  command.first_screen.push_back(since(start));
  if (write(terminal, command.keys.data(), command.keys.size()) < 0) std::exit(1);
  while (read(terminal, bytes, sizeof bytes) > 0) {
  }
  rusage usage = {};
  int status = 0;
  wait4(child, &status, 0, &usage);
  command.whole.push_back(since(start));
  command.resident = std::max(command.resident, usage.ru_maxrss);
  close(terminal);
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

/// Usage: first_screen PROGRAM [RUNS], PROGRAM with its files beside it.
int main(int argc, char* argv[]) {
  if (argc < 2) return 2;
  const int runs = argc > 2 ? std::atoi(argv[2]) : 200;
  setenv("TERM", "xterm", 1);
  std::vector<const char*> items;
  for (const char* item :
       {"1", "one", "2", "two", "3", "three", "4", "four", "5", "five", "6", "six", "7", "seven"}) {
    items.push_back(item);
  }
  std::vector<const char*> dialog = {"dialog", "--menu", "Menu", "20", "70", "7"};
  std::vector<const char*> whiptail = {"whiptail", "--menu", "Menu", "20", "70", "7"};
  dialog.insert(dialog.end(), items.begin(), items.end());
  whiptail.insert(whiptail.end(), items.begin(), items.end());
  Command commands[] = {
      {"harrier", {argv[1]}, "-->", "\033[B\033[B\033[B\033[B\033[B\r"},
      {"dialog --menu", dialog, "Cancel", "\r"},
      {"whiptail --menu", whiptail, "Cancel", "\r"},
  };
  for (int i = 0; i < runs; ++i) {
    for (Command& command : commands) run_once(command);
  }
  std::printf("%-16s %14s %14s %12s   medians of %d interleaved runs\n", "", "first screen",
              "and exit", "resident", runs);
  for (const Command& command : commands) {
    std::printf("%-16s %11.2f ms %11.2f ms %8ld KiB   %.2f of dialog\n", command.name,
                median(command.first_screen), median(command.whole), command.resident,
                median(command.whole) / median(commands[1].whole));
  }
  return 0;
}
