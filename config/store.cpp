#include "config/store.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "config/group_ini.h"
#include "config/jobs_ini.h"
#include "config/kestrel_ini.h"
#include "config/replace_file.h"
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

int sync_program_folder() { return sync_folder(ProgramDir); }

// The folder is flushed once for all files. A failure is reported under the name of the last.
constexpr Writer writers[] = {
    {SaveKestrelINI, "\n\rSaveKestrelINI fail "}, {SaveJobsINI, "\n\rSaveJobsINI fail "},
    {SaveJobsSTSINI, "\n\rSaveJobsSTSINI fail "}, {SaveGroupsINI, "\n\rSaveGroupsINI fail "},
    {SaveSensorINI, "\n\rSaveSensorINI fail "},   {sync_program_folder, "\n\rSaveSensorINI fail "},
};

int save(const Writer& writer) {
  try {
    return writer.save();
  } catch (const std::bad_alloc&) {
    return ENOMEM;
  }
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
  for (const Writer& writer : writers) {
    const int error = save(writer);
    if (error == 0) continue;
    char message[64];
    std::snprintf(message, sizeof message, "%s%d", writer.failure, error);
    report(message);
    sync_program_folder();  // for the files before it
    return error;
  }
  return 0;
}
