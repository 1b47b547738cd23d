#include "check/check.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "check/files.h"
#include "check/finding.h"
#include "check/input.h"
#include "check/language.h"
#include "check/meaning.h"
#include "check/profile.h"
#include "check/reading.h"
#include "check/saving.h"
#include "check/source.h"
#include "config/group_ini.h"
#include "config/ini_reader.h"
#include "config/jobs_ini.h"
#include "config/known_files.h"
#include "config/sensor_ini.h"
#include "config/store.h"
#include "schedule/schedule_code.h"
#include "tui/diag.h"

namespace {

/// As at a start of the program.
void begin() {
  findings.clear();
  reset_sources();
  actual_section = 255;
  std::memset(&INI, 0, sizeof INI);
}

/// After the files have been read into `INI`.
void finish() {
  copy_record(INI1, INI);
  check_empty_files();
  check_saving();
  check_meaning();
  sort_findings();
}

void load_all() {
  const Listening listening;
  if (LoadINI() == 0) return;
  // The editor does not start now, but the other files are worth a look.
  LoadJobsINI();
  LoadJobsSTSINI();
  LoadGroupsINI();
  LoadSensorINI();
  DecodeSchedules();
}

}  // namespace

int check_folder(const std::string& folder, const std::string& shown) {
  const std::string dir = folder.ends_with('/') ? folder : folder + "/";
  if (dir.size() >= program_dir_size) return ENAMETOOLONG;
  ProgramDir[dir.copy(ProgramDir, program_dir_size - 1)] = '\0';
  begin();
  const int error = look_for_files();
  if (error != 0) return error;
  for (Source& source : sources) {
    const std::string name = name_of(source);
    source.path = program_path(name);
    source.shown = shown + name;
    source.checked = true;
  }
  load_all();
  for (Source& source : sources) {
    struct stat info;
    source.missing = stat(source.path.c_str(), &info) != 0 && errno == ENOENT;
    source.error = read_error(source.path);
  }
  check_files(shown);
  finish();
  return 0;
}

int check_file(const std::string& path, std::string_view name, const std::string& shown) {
  begin();
  const bool is_profile = name == "profile";
  const bool is_language = is_language_name(name);
  Source* const source = source_named(name);
  if (!is_profile && !is_language && source == nullptr) return EINVAL;
  const Input input(path);
  if (input.error() != 0) return input.error();
  if (source == nullptr) {
    const int error =
        is_profile ? check_profile(input.path(), shown) : check_language(input.path(), shown);
    sort_findings();
    return error;
  }
  source->path = input.path();
  source->shown = shown;
  source->checked = true;
  {
    const Listening listening;
    g_index = static_cast<std::uint8_t>(source->group);
    EncodeINIFile(source->file, source->path.c_str());
    DecodeSchedules();
  }
  source->error = read_error(source->path);
  if (source->error != 0) return source->error;
  finish();
  return 0;
}
