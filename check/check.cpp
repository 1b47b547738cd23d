#include "check/check.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "check/files.h"
#include "check/finding.h"
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

/// Hears the reader as long as it lives.
class Listening {
 public:
  Listening() {
    begin_reading();
    piece_listener = listen_to_piece;
  }
  ~Listening() { piece_listener = nullptr; }
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;
};

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
  const int error = look_for_files();
  if (error != 0) return error;
  begin();
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
  if (name == "profile") return check_profile(path, shown);
  if (is_language_name(name)) return check_language(path, shown);
  Source* const source = source_named(name);
  if (source == nullptr) return EINVAL;
  source->path = path;
  source->shown = shown;
  source->checked = true;
  {
    const Listening listening;
    g_index = static_cast<std::uint8_t>(source->group);
    EncodeINIFile(source->file, path.c_str());
    DecodeSchedules();
  }
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return errno;
  source->error = read_error(path);
  if (source->error != 0) return source->error;
  finish();
  return 0;
}
