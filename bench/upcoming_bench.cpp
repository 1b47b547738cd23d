#include <benchmark/benchmark.h>

#include <cstdlib>

#include "tests/plain_upcoming.h"

/// Compares the search for upcoming matches of a full schedule with the plain way: `TestSchedules`
/// for every entry in every minute. `TZ` is unset, as it is for most programs. The C library then
/// looks at the zone file in every `localtime`.

namespace {

constexpr std::int64_t now = 1893456000 + 17;  // 01.01.2030 00:00 UTC and some seconds

/// Sixteen entries: six daily, five weekly, three monthly, two once.
const Record& full_schedule() {
  static Record record;
  for (int i = 0; i < schedule_count; ++i) {
    const auto small = static_cast<std::uint8_t>(i);
    ScheduleEntry& entry = record.schedule[i];
    entry.ups = small;
    entry.action = static_cast<std::uint8_t>(1 + i % 7);
    entry.type = static_cast<std::uint8_t>(i < 6 ? 2 : i < 11 ? 3 : i < 14 ? 4 : 1);
    entry.day = static_cast<std::uint8_t>(i < 11 ? i - 5 : 2 * i);
    entry.time = static_cast<std::int32_t>(now + i * (i < 14 ? 5000 : 400000));
  }
  return record;
}

/// The plain way takes seconds for 100 days, and each of its minutes costs the same. So it runs
/// over five days only. The counters of both ways hold the time for one day.
void plain(benchmark::State& state) {
  unsetenv("TZ");
  const Record& record = full_schedule();
  const std::int64_t days = state.range(0);
  for ([[maybe_unused]] auto _ : state) {
    benchmark::DoNotOptimize(plain_upcoming_lines(now, now + days * 86400, record));
  }
  state.counters["s_per_day"] =
      benchmark::Counter(static_cast<double>(days), benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}
BENCHMARK(plain)->Arg(5)->Unit(benchmark::kMillisecond);

void quick(benchmark::State& state) {
  unsetenv("TZ");
  const Record& record = full_schedule();
  const std::int64_t days = state.range(0);
  for ([[maybe_unused]] auto _ : state) {
    std::int64_t start = now;
    benchmark::DoNotOptimize(next_actions(start, now + days * 86400, record,
                                          [](const std::tm&, const ScheduleEntry&) {}));
  }
  const std::int64_t checked = now + 5 * 86400;
  if (upcoming_lines(now, checked, record) != plain_upcoming_lines(now, checked, record)) {
    state.SkipWithError("the two lists differ");
  }
  state.counters["s_per_day"] =
      benchmark::Counter(static_cast<double>(days), benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}
BENCHMARK(quick)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
