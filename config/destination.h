#pragma once

#include <string>
#include <string_view>

#include "config/replace_file.h"

/// Where the writers' files go: beside the program, alone or staged as parts of a unit, or into a
/// folder that rescues them.

/// While one exists, files beside the program are staged in `unit`.
class StagedInUnit {
 public:
  explicit StagedInUnit(FileUnit& unit);
  ~StagedInUnit();
  StagedInUnit(const StagedInUnit&) = delete;
  StagedInUnit& operator=(const StagedInUnit&) = delete;
};

/// While one exists, new files are written to `folder` instead, readable by their owner alone.
class PutIntoFolder {
 public:
  explicit PutIntoFolder(const std::string& folder);
  ~PutIntoFolder();
  PutIntoFolder(const PutIntoFolder&) = delete;
  PutIntoFolder& operator=(const PutIntoFolder&) = delete;
};

/// Whether there is a `PutIntoFolder`.
bool rescuing();

/// Writes the file `name` of the configuration. A new file gets owner, group and permissions of
/// kestrel.ini. A file that could not be read is not replaced. Returns 0, or the errno of what
/// failed or of that reading. A rescue leaves such a file out and returns 0.
int put_file(const char* name, std::string_view contents, Replacement how = {});

/// Deletes the file `name` of the configuration, if it is there and may be deleted. The caller has
/// asked `read_error`. Returns 0 or
/// errno.
int delete_file(const char* name, int rank);
