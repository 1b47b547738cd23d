#include <benchmark/benchmark.h>
#include <ini.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/largest.h"
#include "config/store.h"
#include "tui/diag.h"

/// Compares loading and saving of the largest configuration with plain uses of the C library and
/// with inih, a small INI reader. Every benchmark counts its lines.

namespace fs = std::filesystem;

namespace {

bool flushing = true;

}  // namespace

/// Replaces the function of the C library, so that a save can be timed without its flushes.
extern "C" int fsync(int fd) { return flushing ? static_cast<int>(syscall(SYS_fsync, fd)) : 0; }

namespace {

/// A folder with the largest configuration: in memory, or on the disk of the current folder.
class Configuration {
 public:
  explicit Configuration(const char* where) : path_(fs::path(where) / "harrier-bench.XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) std::abort();
    path_ += '/';
    std::snprintf(ProgramDir, sizeof ProgramDir, "%s", path_.c_str());
    fill_record();
    if (SaveINI() != 0) std::abort();
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
      files_.push_back(entry.path());
    }
    char line[300];
    for (const std::string& name : files_) {
      std::FILE* file = std::fopen(name.c_str(), "r");
      while (std::fgets(line, sizeof line, file) != nullptr) ++lines_;
      std::fclose(file);
    }
  }
  ~Configuration() { fs::remove_all(path_); }
  Configuration(const Configuration&) = delete;
  Configuration& operator=(const Configuration&) = delete;

  const std::vector<std::string>& files() const { return files_; }

  void count_lines(benchmark::State& state) const {
    state.counters["per_line"] = benchmark::Counter(
        lines_, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  }

 private:
  std::string path_;
  std::vector<std::string> files_;
  double lines_ = 0;
};

constexpr char memory[] = "/dev/shm";
constexpr char disk[] = ".";

// --- Loading ------------------------------------------------------------------------------------

void load_harrier(benchmark::State& state) {
  const Configuration configuration(memory);
  for ([[maybe_unused]] auto _ : state) {
    if (LoadINI() != 0) state.SkipWithError("cannot load the configuration");
  }
  configuration.count_lines(state);
}

/// The least that any reader does: reads lines and looks for the "=" in each.
void load_fgets(benchmark::State& state) {
  const Configuration configuration(memory);
  char line[300];
  for ([[maybe_unused]] auto _ : state) {
    for (const std::string& name : configuration.files()) {
      std::FILE* file = std::fopen(name.c_str(), "r");
      while (std::fgets(line, sizeof line, file) != nullptr) {
        benchmark::DoNotOptimize(std::strchr(line, '='));
      }
      std::fclose(file);
    }
  }
  configuration.count_lines(state);
}

/// inih, which passes names and values to a function that stores nothing.
void load_inih(benchmark::State& state) {
  const Configuration configuration(memory);
  const auto take = [](void*, const char* section, const char* name, const char* value) {
    benchmark::DoNotOptimize(section);
    benchmark::DoNotOptimize(name);
    benchmark::DoNotOptimize(value);
    return 1;
  };
  for ([[maybe_unused]] auto _ : state) {
    for (const std::string& name : configuration.files()) {
      if (ini_parse(name.c_str(), take, nullptr) != 0) state.SkipWithError("inih refuses a file");
    }
  }
  configuration.count_lines(state);
}

// --- Saving -------------------------------------------------------------------------------------

/// Changes a value in the main file, or one in every file: what is the same is not written.
void change_record(bool every_file) {
  INI.system.Contact.bytes[0] ^= 1;
  if (!every_file) return;
  INI.job[0].LogDelay ^= 1;
  INI.job_state[0].LogDelay ^= 1;
  for (Group& group : INI.group) group.RedundancyLevel ^= 1;
  INI.sensor[0].TempThrUp ^= 1;
}

void save_harrier(benchmark::State& state, const char* where, bool flushed, bool every_file) {
  const Configuration configuration(where);
  flushing = flushed;
  for ([[maybe_unused]] auto _ : state) {
    change_record(every_file);
    if (SaveINI() != 0) state.SkipWithError("cannot save the configuration");
  }
  flushing = true;
  configuration.count_lines(state);
}

/// A line of a file, split into format and value beforehand, so that only printing is timed.
struct Line {
  std::string form;  // contains "%u", "%s" or neither
  bool is_text;
  std::string text;
  unsigned number;
};

std::vector<Line> lines_of(const std::string& name) {
  std::vector<Line> lines;
  char line[300];
  std::FILE* file = std::fopen(name.c_str(), "r");
  while (std::fgets(line, sizeof line, file) != nullptr) {
    const std::string text = line;
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) {
      lines.push_back({text, false, {}, 0});
    } else if (text[equals + 1] == '"') {
      const std::size_t start = equals + 2;
      lines.push_back({text.substr(0, start) + "%s\"\n", true,
                       text.substr(start, text.find('"', start) - start), 0});
    } else {
      lines.push_back({text.substr(0, equals + 1) + "%u\n",
                       false,
                       {},
                       static_cast<unsigned>(std::strtoul(line + equals + 1, nullptr, 10))});
    }
  }
  std::fclose(file);
  return lines;
}

/// Prints line by line into the existing files, which a loss of power would leave incomplete.
void save_fprintf(benchmark::State& state, const char* where) {
  const Configuration configuration(where);
  std::vector<std::vector<Line>> files;
  for (const std::string& name : configuration.files()) files.push_back(lines_of(name));
  for ([[maybe_unused]] auto _ : state) {
    for (std::size_t i = 0; i < files.size(); ++i) {
      std::FILE* file = std::fopen(configuration.files()[i].c_str(), "w");
      for (const Line& line : files[i]) {
        if (line.is_text) {
          std::fprintf(file, line.form.c_str(), line.text.c_str());
        } else {
          std::fprintf(file, line.form.c_str(), line.number);
        }
      }
      std::fclose(file);
    }
  }
  configuration.count_lines(state);
}

BENCHMARK(load_harrier)->Unit(benchmark::kMicrosecond);
BENCHMARK(load_fgets)->Unit(benchmark::kMicrosecond);
BENCHMARK(load_inih)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(save_harrier, memory, memory, true, true)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(save_fprintf, memory, memory)->Unit(benchmark::kMicrosecond);
// A save on a disk mostly waits, so these measure elapsed time.
BENCHMARK_CAPTURE(save_harrier, disk, disk, true, true)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(save_harrier, disk_setting, disk, true, false)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(save_harrier, disk_unflushed, disk, false, true)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(save_fprintf, disk, disk)->Unit(benchmark::kMicrosecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
