#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <random>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/operator.h"

namespace {

using namespace std::string_view_literals;

/// No keys for signals, and no line end. An arrow is the only one with a bracket.
constexpr std::string_view keyboard[] = {
    "a"sv,    "7"sv,    "0"sv,    " "sv,    "\""sv,   "="sv,      ";"sv,    "%s"sv,
    "ä"sv,    "€"sv,    "😀"sv,    "\xff"sv, "\xc3"sv, "\0"sv,     "\x04"sv, "\x08"sv,
    "\x7f"sv, "\x15"sv, "\x17"sv, "\t"sv,   "\x1b"sv, "\x1b[C"sv,
};
constexpr std::string_view up = "\x1b[A";
constexpr std::string_view down = "\x1b[B";

/// Most questions are answered well: every refusal costs a pause of two seconds.
constexpr std::string_view answers[][2] = {
    {"Save the changes", "y"},
    {"UPS type code", "TARVO52R1500"},
    {"[day.month.year", "24.12.2037 07:45"},
    {"[hour:minute", "07:30"},
    {"profile file", "profile"},
};

/// Deep in the menus of the demo configuration.
std::vector<std::string> places() {
  std::istringstream paths(
      "1/4 1/7 2/1 2/2/4 2/3/4 2/17/5/1 2/17/5/1/7/2 2/17/5/1/8/1/1/1 2/17/5/1/8/65 "
      "2/17/5/1/8/2/1/2/2 2/17/5/1/8/2/1/2/3 2/17/5/1/9 3/1 3/2 3/3 3/4 4/1/2 4/2/3 4/3/4 4/17 "
      "5/2/1/2 5/3/12/10 5/4 5/5");
  return {std::istream_iterator<std::string>(paths), {}};
}

/// Presses keys at random.
class AnyKeys : public testing::TestWithParam<int> {
 protected:
  static int number(const char* variable, int otherwise) {
    const char* value = std::getenv(variable);
    return value == nullptr ? otherwise : std::atoi(value);
  }

  int dice(int sides) { return std::uniform_int_distribution(0, sides - 1)(random_); }
  std::size_t dice(std::size_t sides) {
    return std::uniform_int_distribution(std::size_t{0}, sides - 1)(random_);
  }

  std::string presses(std::string_view key, int most) {
    std::string keys;
    for (int i = dice(most); i >= 0; --i)
      keys += key.empty() ? keyboard[dice(std::size(keyboard))] : key;
    return keys;
  }

  std::string answer(const std::string& screen) {
    static const std::regex bounds(R"(\[(\d+)-(\d+)\])");
    if (dice(50) == 0) return presses("", dice(10) == 0 ? 400 : 20) + "\r";
    for (const auto& [question, good] : answers) {
      if (screen.find(question) != std::string::npos && dice(5) != 0) {
        return std::string(good) + "\r";
      }
    }
    std::smatch found;
    if (std::regex_search(screen, found, bounds)) return found[1 + dice(2)].str() + "\r";
    return (dice(10) == 0 ? "*" : presses("", 12)) + "\r";
  }

  std::string burst(const std::string& screen) {
    const std::size_t arrow = screen.find("-->");
    if (arrow == std::string::npos) return "\x15" + answer(screen);  // or a pause, it asks again
    // The way back is taken less often than it is met: deep down there is more to find.
    const bool may_enter = screen.find("0 - ", arrow) - arrow > 5 || dice(2) == 0;
    if (dice(3) == 0) return may_enter ? "\r" : presses(up, 20);
    const std::string_view keys[] = {up, "", down, down};
    return presses(keys[dice(4)], dice(3) == 0 ? 20 : 6) + (dice(20) == 0 ? "\r\r" : "");
  }

 private:
  std::mt19937 random_{static_cast<unsigned>(number("HARRIER_MONKEY_SEED", 0) + GetParam())};
};

TEST_P(AnyKeys, NeitherCrashNorHangNorSpoilTheTerminal) {
  const std::vector<std::string> starts = places();
  std::optional<Folder> folder;
  int left = number("HARRIER_MONKEY_KEYS", 2000);
  for (int run = 0; left > 0 && !HasFailure(); ++run) {
    // Three runs with the same files, the first one from somewhere deep in the menus.
    if (run % 3 == 0) folder.emplace();
    Operator op(*folder, {.environment = {{"PATH", folder->path()}}});  // no text editor there
    if (run % 3 == 0) op.open(starts.at(dice(starts.size())));
    for (int bursts = 10 + dice(150); bursts > 0 && left > 0 && !op.ended(); --bursts) {
      EXPECT_EQ(op.canonical(), op.echo());
      if (dice(100) == 0) op.resize(20 + dice(20), 70 + dice(20));
      const std::string keys = burst(op.screen());
      left -= static_cast<int>(
          keys.size() - 2 * static_cast<std::size_t>(std::count(keys.begin(), keys.end(), '[')));
      op.type(keys);
    }
    const bool running = !op.ended();
    if (running && dice(4) == 0) {
      op.hang_up();
      EXPECT_EQ(op.exit_status(), 0);
      continue;
    }
    op.signal(SIGTERM);
    const int status = op.exit_status();
    EXPECT_TRUE(running ? status == 128 + SIGTERM : status == 0 || status == 1) << status;
    EXPECT_TRUE(op.canonical() && op.echo() && op.cursor_visible());
  }
}

INSTANTIATE_TEST_SUITE_P(Monkey, AnyKeys, testing::Values(1, 2));

}  // namespace
