#include "config/store.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <new>
#include <vector>

#include "config/destination.h"
#include "config/group_ini.h"
#include "config/jobs_ini.h"
#include "config/kestrel_ini.h"
#include "config/replace_file.h"
#include "config/rescue.h"
#include "config/sensor_ini.h"
#include "config/signals_held.h"
#include "schedule/schedule_code.h"
#include "tui/diag.h"

namespace {
constexpr std::size_t page_size = 4096;
}

// Aligned, so that the parts which `copy_record` and `clear_record` compare are pages of memory.
alignas(page_size) Record INI = {};
alignas(page_size) Record INI1 = {};
std::int32_t DataChanged = 0;

namespace {

struct Writer {
  int (*save)();
  const char* failure;
};

// A flush of the folder that fails is reported under the name of the last file.
constexpr Writer writers[] = {
    {SaveKestrelINI, "\n\rSaveKestrelINI fail "}, {SaveJobsINI, "\n\rSaveJobsINI fail "},
    {SaveJobsSTSINI, "\n\rSaveJobsSTSINI fail "}, {SaveGroupsINI, "\n\rSaveGroupsINI fail "},
    {SaveSensorINI, "\n\rSaveSensorINI fail "},
};

std::vector<std::string> kept_files;

/// Calls `work`, which may run out of memory. Returns 0 or errno.
template <typename Work>
int guarded(Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return ENOMEM;
  }
}

/// Stages the files in turn. Returns the error of the first writer that fails; `writer` becomes its
/// number.
int stage_all(FileUnit& unit, int& writer) {
  const StagedInUnit destination(unit);
  int error = 0;
  for (writer = 0; writer < std::ssize(writers); ++writer) {
    unit.begin(writer);
    error = guarded(writers[writer].save);
    if (error != 0) break;
  }
  return error;
}

/// Calls every writer. Returns the error of the first that fails.
int write_all() {
  int error = 0;
  for (int i = 0; i < std::ssize(writers) && error == 0; ++i) error = guarded(writers[i].save);
  return error;
}

void report_failure(int writer, int error) {
  report((writers[writer].failure + std::to_string(error)).c_str());
  report(("\n\r" + rescue_files(write_all)).c_str());
}

void clear_record(Record& record) {
  static constexpr char zeros[page_size] = {};
  auto* bytes = reinterpret_cast<char*>(&record);
  for (std::size_t at = 0; at < sizeof record; at += page_size) {
    const std::size_t size = std::min(page_size, sizeof record - at);
    if (std::memcmp(bytes + at, zeros, size) != 0) std::memset(bytes + at, 0, size);
  }
}

}  // namespace

void copy_record(Record& to, const Record& from) {
  auto* target = reinterpret_cast<char*>(&to);
  const auto* source = reinterpret_cast<const char*>(&from);
  for (std::size_t at = 0; at < sizeof to; at += page_size) {
    const std::size_t size = std::min(page_size, sizeof to - at);
    if (std::memcmp(target + at, source + at, size) != 0)
      std::memcpy(target + at, source + at, size);
  }
}

int LoadINI() {
  clear_record(INI);
  const int missing = LoadKestrelINI();
  if (missing != 0) return missing;
  // The blocks of other files that are missing stay zero.
  LoadJobsINI();
  LoadJobsSTSINI();
  LoadGroupsINI();
  LoadSensorINI();
  DecodeSchedules();
  copy_record(INI1, INI);
  return 0;
}

int SaveINI() {
  const SignalsHeld held;
  EncodeSchedules();
  FileUnit unit;
  int writer = 0;
  int error = stage_all(unit, writer);
  // Without room for one file none is replaced. A file that cannot be opened stops the files after
  // it only.
  if (error == 0 || !unit.write_failed()) {
    int swapped = 0;
    const int swap_error = guarded([&] { return unit.swap(swapped); });
    if (error == 0) {
      error = swap_error;
      writer = swapped;
    }
  }
  guarded([&] { return kept_files = unit.kept(), 0; });
  if (error != 0) guarded([&] { return report_failure(writer, error), 0; });
  return error;
}

std::span<const std::string> foreign_changes() { return kept_files; }
