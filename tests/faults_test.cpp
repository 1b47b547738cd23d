#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "config/store.h"
#include "tests/failing_calls.h"
#include "tests/operator.h"
#include "tests/tables.h"
#include "tui/terminal.h"

namespace {

namespace fs = std::filesystem;
using Files = Folder::Files;

/// Every file that there can be but one: the demo configuration with ten groups, two of which
/// leave.
Files full_configuration() {
  Files files = demo_with("");
  files.erase("jobsSTS.ini");
  const std::string group = files["group_00.ini"];
  for (int i = 0; i < 10; ++i) {
    const std::string name = i == 4 || i == 9 ? "leaves" : "G" + std::to_string(i);
    files["group_0" + std::to_string(i) + ".ini"] =
        with_value(group, "Common", "Name", '"' + name + '"');
  }
  return files;
}

/// Changes something in every file. Values and not steps, so that a second run changes nothing
/// more.
void change(Record& record) {
  record.system.Name.assign("changed");
  record.job[0].LogDelay = record.job_state[0].LogDelay = 4711;
  for (Group& group : record.group) {
    if (group.Name.view() == "leaves") group = {};
    if (!group.Name.empty()) group.UPSShutdownDelay = 4711;
  }
  record.sensor[0].Name.assign("changed");
}

/// Loads, changes and saves. Returns the number of operations, and what `SaveINI` does.
std::pair<int, int> save(const Folder& folder, int at = 0, int kind = 0) {
  int error = -1;
  folder.use();
  EXPECT_EQ(LoadINI(), 0);
  change(INI);
  const int operations = with_fault(at, kind, [&] { error = SaveINI(); });
  return {operations, error};
}

/// The same in a process of its own. Returns the status as waitpid does; what has been printed goes
/// to `output`.
int save_apart(const Folder& folder, int at, int kind, std::string& output) {
  const pid_t child = fork();
  if (child == 0) {
    dup2(creat(folder.path("output").c_str(), 0600), STDOUT_FILENO);
    const int error = save(folder, at, kind).second;
    flush();
    _exit(error == 0 ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  output = folder.read("output");
  folder.remove("output");
  return status;
}

/// Makes a folder hold these files and no others.
void restore(const Folder& folder, const Files& files) {
  for (const auto& [name, bytes] : folder.files()) {
    if (!files.contains(name)) folder.remove(name);
  }
  for (const auto& [name, bytes] : files) folder.write(name, bytes);
}

/// A program that was killed had nobody left to remove its temporary file, nor to put back the old
/// contents of the file that it wrote in place.
void expect_old_or_new(const Files& files, const Files& before, const Files& after, bool killed) {
  for (const auto& file : files) {
    const auto has = [&](const Files& some) {
      return std::find(some.begin(), some.end(), file) != some.end();
    };
    const bool temporary = !before.contains(file.first) && !after.contains(file.first);
    const bool in_place = file.first == "sensor.ini" || file.first == "shared";
    EXPECT_TRUE(has(before) || has(after) || (killed && (temporary || in_place)))
        << file.first << " is neither old nor new";
  }
  for (const auto& [name, bytes] : before) {
    EXPECT_TRUE(files.contains(name) || !after.contains(name)) << name << " is lost";
  }
}

TEST(FailedSave, LeavesEveryFileOldOrNew) {
  if (access("/dev/shm", W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);  // no disk is needed
  const Folder folder(full_configuration());
  const std::string link = folder.path("jobs.ini");
  const std::string shared = folder.path("sensor.ini");
  fs::rename(link, folder.path("real"));
  fs::create_symlink("real", link);
  fs::create_hard_link(shared, folder.path("shared"));
  const Files before = folder.files();
  const auto [operations, error] = save(folder);
  const Files after = folder.files();
  ASSERT_EQ(error, 0);
  ASSERT_GE(operations, 90);
  // A file is flushed before it gets its name, and the folder before the file of a group goes.
  const std::string swapped = "write fsync rename ";
  std::string order = swapped + swapped + "folder ";  // of jobs.ini, which is a link
  for (int file = 0; file < 9; ++file) order += swapped;
  EXPECT_EQ(journal, order + "folder unlink write fsync folder ");
  for (const int kind : {ENOSPC, EIO, EACCES, -SIGKILL, -SIGTERM}) {
    std::string failing;  // the writers that say that they fail, one after the other
    for (int at = 1; at <= operations && !HasFailure(); ++at) {
      SCOPED_TRACE("operation " + std::to_string(at) + ": " + std::to_string(kind));
      restore(folder, before);
      std::string output;
      const int status = save_apart(folder, at, kind, output);
      Files files = folder.files();
      expect_old_or_new(files, before, after, kind == -SIGKILL);
      if (kind == -SIGKILL) {
        EXPECT_EQ(status, SIGKILL);
      } else if (kind == -SIGTERM || status == 0) {  // or an operation that a save can do without
        EXPECT_EQ(status, kind == -SIGTERM ? SIGTERM : 0);
        EXPECT_EQ(output, "");
        if (kind == EACCES) files.erase("group_08.ini");  // stays when it may not be deleted
        EXPECT_EQ(files, after);
      } else {
        EXPECT_EQ(WEXITSTATUS(status), 1);
        EXPECT_TRUE(output.ends_with("INI fail " + std::to_string(kind))) << output;
        const std::string writer = output.substr(2, output.find("INI") - 2);
        if (!failing.ends_with(writer)) failing += writer;
      }
    }
    EXPECT_EQ(failing, kind < 0 ? "" : "SaveKestrelSaveJobsSaveJobsSTSSaveGroupsSaveSensor");
  }
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(fs::hard_link_count(shared), 2U);
}

#ifndef __SANITIZE_ADDRESS__  // the sanitizers reserve more memory than there is
TEST(Start, SaysThatMemoryIsLow) {
  const Folder folder;
  int status = 128 + SIGSEGV;
  std::string output;
  // With too little the C library has none for itself, and a signal ends the program.
  for (int kib = 512; status > 128; kib += 64) {
    const std::string limits = "ulimit -c 0; ulimit -d " + std::to_string(kib);
    folder.write("limited", "#!/bin/sh\n" + limits + "; exec ./harrier\n");
    Operator op(folder, {.name = "./limited"});
    status = op.exit_status();
    output = op.output();
  }
  EXPECT_EQ(status, 4);
  EXPECT_EQ(output, "\r\n\rLow memory for strings !");
}
#endif

}  // namespace
