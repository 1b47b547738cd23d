#include "check/nearest.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace {

/// Keys have ASCII letters only.
char small(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

constexpr std::size_t longest = 60;

/// The number of slips between two texts of at most `longest` bytes: the optimal string alignment
/// distance. The case of a letter does not count. Stops at `limit`, or more.
std::size_t slips(std::string_view a, std::string_view b, std::size_t limit) {
  std::array<std::array<std::uint8_t, longest + 1>, longest + 1> cost;
  for (std::size_t j = 0; j <= b.size(); ++j) cost[0][j] = static_cast<std::uint8_t>(j);
  std::size_t before = 0;  // the least of the row before
  for (std::size_t i = 1; i <= a.size(); ++i) {
    cost[i][0] = static_cast<std::uint8_t>(i);
    std::size_t least = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = small(a[i - 1]) == small(b[j - 1]);
      int best =
          std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (same ? 0 : 1)});
      const bool exchanged = i > 1 && j > 1 && small(a[i - 1]) == small(b[j - 2]) &&
                             small(a[i - 2]) == small(b[j - 1]);
      if (exchanged) best = std::min(best, cost[i - 2][j - 2] + 1);
      cost[i][j] = static_cast<std::uint8_t>(best);
      least = std::min<std::size_t>(least, cost[i][j]);
    }
    // What follows builds on these two rows.
    if (least >= limit && before >= limit) return limit;
    before = least;
  }
  return cost[a.size()][b.size()];
}

}  // namespace

std::string_view nearest_name(std::string_view text, std::span<const std::string_view> names) {
  if (text.size() > longest) return {};
  // A slip in every third letter would be another word.
  std::size_t fewest = text.size() / 3 + 1;
  std::string_view nearest;
  for (const std::string_view name : names) {
    // Each byte that is missing or too many is a slip.
    const auto [shorter, longer] = std::minmax({text.size(), name.size()});
    if (longer > longest || longer - shorter >= fewest) continue;
    const std::size_t count = slips(text, name, fewest);
    if (count >= fewest) continue;
    fewest = count;
    nearest = name;
  }
  return nearest;
}
