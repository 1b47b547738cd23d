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

/// Every file that there can be: the demo configuration with ten groups, two of which leave.
Files full_configuration() {
  Files files = demo_with("");
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

/// Loads from one folder and saves to another, or the same. Returns the number of operations, and
/// what `SaveINI` does.
std::pair<int, int> save(const Folder& from, const Folder& to, int at = 0, int kind = 0) {
  int error = -1;
  from.use();
  EXPECT_EQ(LoadINI(), 0);
  change(INI);
  to.use();
  const int operations = with_fault(at, kind, [&] { error = SaveINI(); });
  return {operations, error};
}

/// The same in a process of its own. Returns the status as waitpid does; what has been printed goes
/// to `output`.
int save_apart(const Folder& from, const Folder& to, int at, int kind, std::string& output) {
  const pid_t child = fork();
  if (child == 0) {
    dup2(creat(to.path("output").c_str(), 0600), STDOUT_FILENO);
    const int error = save(from, to, at, kind).second;
    flush();
    _exit(error == 0 ? 0 : 1);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  output = to.read("output");
  to.remove("output");
  return status;
}

/// Makes a folder hold these files and no others.
void restore(const Folder& folder, const Files& files) {
  for (const auto& [name, bytes] : folder.files()) {
    if (!files.contains(name)) folder.remove(name);
  }
  for (const auto& [name, bytes] : files) folder.write(name, bytes);
}

/// A program that was killed had nobody left to remove its temporary file.
void expect_old_or_new(const Files& files, const Files& before, const Files& after, bool killed) {
  for (const auto& file : files) {
    const auto has = [&](const Files& some) {
      return std::find(some.begin(), some.end(), file) != some.end();
    };
    const bool temporary = !before.contains(file.first) && !after.contains(file.first);
    EXPECT_TRUE(has(before) || has(after) || (killed && temporary))
        << file.first << " is neither old nor new";
  }
  for (const auto& [name, bytes] : before) {
    EXPECT_TRUE(files.contains(name) || !after.contains(name)) << name << " is lost";
  }
}

/// In which state the files are that the save replaces.
enum State { Old, None, Linked, Shared };

class Fault : public testing::TestWithParam<State> {};

TEST_P(Fault, LeavesEveryFileOldOrNew) {
  if (access("/dev/shm", W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);  // no disk is needed
  const Folder old_folder(full_configuration());
  const Folder new_folder(Files{});
  const Folder& to = GetParam() == None ? new_folder : old_folder;
  const std::string jobs = old_folder.path("jobs.ini");
  if (GetParam() == Linked || GetParam() == Shared) fs::rename(jobs, old_folder.path("real"));
  if (GetParam() == Linked) fs::create_symlink("real", jobs);
  if (GetParam() == Shared) fs::create_hard_link(old_folder.path("real"), jobs);
  const Files before = to.files();
  const auto [operations, error] = save(old_folder, to);
  const Files after = to.files();
  ASSERT_EQ(error, 0);
  ASSERT_GE(operations, 90);
  for (const int kind : {ENOSPC, EIO, EACCES, -SIGKILL, -SIGTERM}) {
    if (kind == -SIGKILL && GetParam() == Shared) continue;  // is written in place
    std::string failing;  // the writers that say that they fail, one after the other
    for (int at = 1; at <= operations && !HasFailure(); ++at) {
      SCOPED_TRACE("operation " + std::to_string(at) + ": " + std::to_string(kind));
      restore(to, before);
      std::string output;
      const int status = save_apart(old_folder, to, at, kind, output);
      Files files = to.files();
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
  EXPECT_EQ(fs::is_symlink(jobs), GetParam() == Linked);
  EXPECT_EQ(fs::hard_link_count(jobs), GetParam() == Shared ? 2U : 1U);
}

INSTANTIATE_TEST_SUITE_P(Files, Fault, testing::Values(Old, None, Linked, Shared));

TEST(FailedSave, OutlivesALimitOfTheFileSize) {
  const Folder folder;
  folder.write("limited", "#!/bin/sh\nulimit -f 2\nexec ./harrier\n");
  const Files before = folder.files();
  Operator op(folder, {.name = "./limited"});
  op.open("1/1");
  op.type("Attic\r");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_TRUE(op.shows("SaveKestrelINI fail " + std::to_string(EFBIG))) << op.screen();
  EXPECT_TRUE(op.shows("The changes could not be saved")) << op.screen();
  EXPECT_EQ(folder.files(), before);
}

}  // namespace
