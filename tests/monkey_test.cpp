#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <random>
#include <regex>
#include <string>
#include <string_view>

#include "tests/operator.h"
#include "tests/tables.h"

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
    {"$save_question", "y"},  {"$type_code", "TARVO52R1500"}, {"[$once_hint", "24.12.2037 07:45"},
    {"[$time_hint", "07:30"}, {"$load_profile", "profile"},   {"$save_profile", "profile"},
};

/// Presses keys at random, the same ones every time. HARRIER_MONKEY_KEYS makes them more.
class AnyKeys : public testing::TestWithParam<int> {
 protected:
  std::size_t any_of(std::size_t count) { return random_() % count; }
  int dice(int sides) { return static_cast<int>(any_of(static_cast<std::size_t>(sides))); }
  const auto& one_of(const auto& things) { return things[any_of(std::size(things))]; }

  std::string presses(std::string_view key, int most) {
    std::string keys;
    for (int i = dice(most); i >= 0; --i) keys += key.empty() ? one_of(keyboard) : key;
    return keys;
  }

  std::string answer(const std::string& screen) {
    static const std::regex bounds(R"(\[(\d+)-(\d+)\])");
    if (dice(50) == 0) return presses("", dice(10) == 0 ? 400 : 20);
    for (const auto& [question, good] : answers) {
      if (screen.find(english(std::string(question))) != std::string::npos && dice(5) != 0)
        return std::string(good);
    }
    std::smatch found;
    if (std::regex_search(screen, found, bounds)) return found[dice(2) == 0 ? 1 : 2];
    return dice(10) == 0 ? "*" : presses("", 12);
  }

  std::string burst(const std::string& screen) {
    const std::size_t arrow = screen.find("-->");
    if (arrow == std::string::npos) return "\x15" + answer(screen) + "\r";  // or a pause
    // The way back is taken less often than it is met: deep down there is more to find.
    const bool may_enter = screen.find("0 - ", arrow) - arrow > 5 || dice(2) == 0;
    if (dice(3) == 0) return may_enter ? "\r" : presses(up, 20);
    const std::string_view keys[] = {up, "", down, down};
    return presses(one_of(keys), dice(3) == 0 ? 20 : 6) + (dice(20) == 0 ? "\r\r" : "");
  }

 private:
  std::mt19937 random_{static_cast<unsigned>(GetParam())};
};

TEST_P(AnyKeys, NeitherCrashNorHangNorSpoilTheTerminal) {
  const std::vector<Table> places = read_tables("arrow_paths.txt");
  std::optional<Folder> folder;
  const char* wanted = std::getenv("HARRIER_MONKEY_KEYS");
  int left = wanted == nullptr ? 2000 : std::atoi(wanted);
  for (int run = 0; left > 0 && !HasFailure(); ++run) {
    // Three runs with the same files, the first one from somewhere deep in the menus.
    const Line& place = one_of(one_of(places).lines);
    if (run % 3 == 0) folder.emplace(demo_with(place[0]));
    Operator op(*folder, {.environment = {{"PATH", folder->path()}}});  // no text editor there
    if (run % 3 == 0) op.open(place[1]);
    for (int bursts = 10 + dice(150); bursts > 0 && left > 0 && !op.ended(); --bursts) {
      EXPECT_EQ(op.canonical(), op.echo());
      if (dice(100) == 0) op.resize(20 + dice(20), 70 + dice(20));
      const std::string keys = burst(op.screen());
      left -= static_cast<int>(keys.size());
      left += 2 * static_cast<int>(std::count(keys.begin(), keys.end(), '['));
      op.type(keys);
    }
    const bool running = !op.ended();
    op.signal(SIGTERM);
    const int status = op.exit_status();
    EXPECT_TRUE(running ? status == 128 + SIGTERM : status == 0 || status == 1) << status;
    EXPECT_TRUE(op.canonical() && op.echo() && op.cursor_visible());
  }
}

INSTANTIATE_TEST_SUITE_P(Monkey, AnyKeys, testing::Values(1, 2));

}  // namespace
