#include "config/destination.h"

#include <fcntl.h>

#include "config/descriptor.h"
#include "config/known_files.h"
#include "config/service_files.h"
#include "tui/diag.h"

namespace {

FileUnit* open_unit = nullptr;

std::string rescue_folder;

int put_rescued(const char* name, std::string_view contents) {
  const std::string path = rescue_folder + "/" + name;
  unlink(path.c_str());  // a group may come a second time, with all its members
  return create_file(path, contents);
}

}  // namespace

StagedInUnit::StagedInUnit(FileUnit& unit) { open_unit = &unit; }
StagedInUnit::~StagedInUnit() { open_unit = nullptr; }

PutIntoFolder::PutIntoFolder(const std::string& folder) { rescue_folder = folder; }
PutIntoFolder::~PutIntoFolder() { rescue_folder.clear(); }

bool rescuing() { return !rescue_folder.empty(); }

int put_file(const char* name, std::string_view contents, Replacement how) {
  const std::string path = program_path(name);
  const int unread = read_error(path);
  if (rescuing()) return unread == 0 ? put_rescued(name, contents) : 0;
  if (unread != 0) return unread;
  how.model = model_file();
  if (open_unit != nullptr) return open_unit->stage(path, contents, how);
  FileUnit alone;
  int owner = 0;
  const int error = alone.stage(path, contents, how);
  return error != 0 ? error : alone.swap(owner);
}

int delete_file(const char* name, int rank) {
  if (rescuing()) return 0;
  const std::string path = program_path(name);
  if (open_unit != nullptr) {
    open_unit->stage_deletion(path, rank);
    return 0;
  }
  FileUnit alone;
  int owner = 0;
  alone.stage_deletion(path, rank);
  return alone.swap(owner);
}
