#include "check/nearest.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

/// Keys have ASCII letters only.
char small(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// The number of slips between two texts: the optimal string alignment distance. The case of a
/// letter does not count.
std::size_t slips(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> cost(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      std::size_t& best = cost[i][j];
      if (i == 0 || j == 0) {
        best = i + j;
        continue;
      }
      const bool same = small(a[i - 1]) == small(b[j - 1]);
      best =
          std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1, cost[i - 1][j - 1] + (same ? 0 : 1)});
      const bool exchanged = i > 1 && j > 1 && small(a[i - 1]) == small(b[j - 2]) &&
                             small(a[i - 2]) == small(b[j - 1]);
      if (exchanged) best = std::min(best, cost[i - 2][j - 2] + 1);
    }
  }
  return cost[a.size()][b.size()];
}

}  // namespace

std::string_view nearest_name(std::string_view text, std::span<const std::string_view> names) {
  constexpr std::size_t longest = 60;
  if (text.size() > longest) return {};
  // A slip in every third letter would be another word.
  std::size_t fewest = text.size() / 3 + 1;
  std::string_view nearest;
  for (const std::string_view name : names) {
    const std::size_t count = slips(text, name);
    if (count >= fewest) continue;
    fewest = count;
    nearest = name;
  }
  return nearest;
}
