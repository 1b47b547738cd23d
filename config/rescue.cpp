#include "config/rescue.h"

#include <dirent.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "config/destination.h"
#include "config/replace_file.h"

namespace {

/// Removes a folder with the files in it.
void remove_folder(const std::string& path) {
  if (DIR* const folder = opendir(path.c_str())) {
    while (const dirent* const entry = readdir(folder)) {
      unlink((path + "/" + entry->d_name).c_str());
    }
    closedir(folder);
  }
  rmdir(path.c_str());
}

/// Fills a fresh folder in `parent` and appends its name to it. Returns 0 or errno; then there is
/// no such folder.
int fill_folder(std::string& parent, int (*write_all)()) {
  std::string folder = parent + "/harrier-rescue-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return errno;
  const PutIntoFolder destination(folder);
  int error = write_all();
  if (error == 0) error = sync_folder(folder + "/");
  if (error == 0) error = sync_folder(folder);
  if (error != 0) remove_folder(folder);
  parent = folder;
  return error;
}

}  // namespace

std::string rescue_files(int (*write_all)()) {
  int error = 0;
  const char* const places[] = {std::getenv("TMPDIR"), "/var/tmp", std::getenv("HOME")};
  for (const char* const place : places) {
    if (place == nullptr || *place != '/') continue;
    std::string folder = place;
    error = fill_folder(folder, write_all);
    if (error == 0) return "The files as they should be: " + folder;
  }
  return "The files as they should be could not be kept either: " +
         std::string(std::strerror(error));
}
