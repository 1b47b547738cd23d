#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "config/store.h"
#include "groups/group_events.h"
#include "lang/lang_text.h"
#include "menus/main_menu.h"
#include "menus/system_menu.h"
#include "schedule/job_menus.h"
#include "tui/diag.h"
#include "tui/terminal.h"
#include "ups/ups_param.h"

/// Measures a redraw: formats a whole screen of the demo configuration and sends it to /dev/null in
/// one write.

namespace {

void look_into(const char* folder) {
  std::snprintf(ProgramDir, sizeof ProgramDir, "%s/%s/", HARRIER_SOURCE_DIR, folder);
}

void load_demo() {
  look_into("demo");
  if (LoadINI() != 0) std::abort();
  look_into("languages");
  if (AllocText() != 0 || LoadText(harrier, 0) != 0) std::abort();
}

/// Standard output goes to /dev/null while an object of this class exists.
class Silence {
 public:
  Silence() : before_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    close(nowhere);
  }
  ~Silence() {
    dup2(before_, STDOUT_FILENO);
    close(before_);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  int before_;
};

void redraw(benchmark::State& state, void (*draw)()) {
  const Silence silence;
  for ([[maybe_unused]] auto _ : state) {
    draw();
    flush();
  }
}

BENCHMARK_CAPTURE(redraw, main_menu, [] { print_main_menu(1); });
BENCHMARK_CAPTURE(redraw, system_parameters, [] { print_main_param("English", 1); });
BENCHMARK_CAPTURE(redraw, ups_parameters, [] { print_ups_param(1, 0); });
BENCHMARK_CAPTURE(redraw, job, [] { print_job_param(1, 0); });
BENCHMARK_CAPTURE(redraw, group_event, [] { print_gr_event_param(1, 0, 0); });

}  // namespace

int main(int argc, char* argv[]) {
  load_demo();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  FreeText();
  return 0;
}
