#include "config/known_files.h"

#include <algorithm>
#include <cerrno>
#include <vector>

namespace {

struct KnownFile {
  std::string path;
  int error;
  struct stat info;
};

std::vector<KnownFile> known;

KnownFile* find(const std::string& path) {
  const auto at = std::find_if(known.begin(), known.end(),
                               [&](const KnownFile& file) { return file.path == path; });
  return at == known.end() ? nullptr : &*at;
}

bool same_time(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

}  // namespace

void note_read(const std::string& path, int error, const struct stat& info) {
  if (KnownFile* const file = find(path))
    *file = {path, error, info};
  else
    known.push_back({path, error, info});
}

void note_written(const std::string& path) {
  struct stat info = {};
  const int error = stat(path.c_str(), &info) == 0 ? 0 : errno;
  if (find(path) != nullptr) note_read(path, error, info);
}

int read_error(const std::string& path) {
  const KnownFile* const file = find(path);
  return file == nullptr || file->error == ENOENT ? 0 : file->error;
}

bool is_known(const std::string& path) { return find(path) != nullptr; }

bool changed_since_read(const std::string& path, const struct stat& now) {
  const KnownFile* const file = find(path);
  if (file == nullptr) return false;
  const struct stat& then = file->info;
  return file->error != 0 || then.st_dev != now.st_dev || then.st_ino != now.st_ino ||
         then.st_size != now.st_size || !same_time(then.st_mtim, now.st_mtim) ||
         !same_time(then.st_ctim, now.st_ctim);
}
