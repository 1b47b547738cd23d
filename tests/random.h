#pragma once

#include <cstddef>
#include <iterator>
#include <random>

/// The same numbers for the same seed, whatever the library.
class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  std::size_t below(std::size_t limit) { return engine_() % limit; }
  bool once_in(std::size_t times) { return below(times) == 0; }

  auto& one_of(auto& things) {
    return *std::next(std::begin(things), static_cast<std::ptrdiff_t>(below(std::size(things))));
  }

 private:
  std::mt19937 engine_;
};
