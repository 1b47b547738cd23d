#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/operator.h"

namespace {

#ifdef HARRIER_FAULTS  // the sanitizers do not bear a library that is loaded before their own

namespace fs = std::filesystem;
using Files = Folder::Files;

/// Every file that there can be: the demo configuration with ten groups, two of which the driver
/// removes.
Files full_configuration() {
  Files files;
  for (const char* name : {"kestrel.ini", "jobs.ini", "jobsSTS.ini", "sensor.ini"}) {
    files[name] = demo(name);
  }
  for (int i = 0; i < 10; ++i) {
    const std::string name = i == 4 || i == 9 ? "leaves" : "G" + std::to_string(i);
    files["group_0" + std::to_string(i) + ".ini"] =
        with_value(demo("group_00.ini"), "Common", "Name", '"' + name + '"');
  }
  return files;
}

/// Makes a folder hold these files and no others.
void restore(const Folder& folder, const Files& files) {
  for (const auto& [name, bytes] : folder.files()) {
    if (!files.contains(name)) folder.remove(name);
  }
  for (const auto& [name, bytes] : files) folder.write(name, bytes);
}

/// Loads from one folder and saves to another in a program of its own, with a fault at operation
/// `at`, 0 for none. Returns the status as waitpid does; `notes` gets the output and the number of
/// operations.
int save(const Folder& from, const Folder& to, const Folder& notes, int at,
         const std::string& kind) {
  const pid_t driver = fork();
  if (driver == 0) {
    setenv("LD_PRELOAD", HARRIER_FAULTS, 1);
    setenv("FAULT_AT", std::to_string(at).c_str(), 1);
    setenv("FAULT_KIND", kind.c_str(), 1);
    setenv("FAULT_COUNT", notes.path("count").c_str(), 1);
    dup2(creat(notes.path("output").c_str(), 0600), STDOUT_FILENO);
    execl(HARRIER_SAVE_DRIVER, "", from.path().c_str(), to.path().c_str(), nullptr);
    _exit(127);
  }
  int status = -1;
  EXPECT_EQ(waitpid(driver, &status, 0), driver);
  return status;
}

/// In which state the files are that the save replaces.
enum State { Old, None, Linked, Shared };

class Fault : public testing::TestWithParam<State> {};

TEST_P(Fault, LeavesEveryFileOldOrNew) {
  if (access("/dev/shm", W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);  // no disk is needed
  const Folder old_folder(full_configuration());
  const Folder new_folder(Files{});
  const Folder notes(Files{});
  const Folder& to = GetParam() == None ? new_folder : old_folder;
  const std::string jobs = old_folder.path("jobs.ini");
  if (GetParam() == Linked || GetParam() == Shared) fs::rename(jobs, old_folder.path("real"));
  if (GetParam() == Linked) fs::create_symlink("real", jobs);
  if (GetParam() == Shared) fs::create_hard_link(old_folder.path("real"), jobs);
  const Files old_files = old_folder.files();
  const Files before = to.files();

  ASSERT_EQ(save(old_folder, to, notes, 0, ""), 0);
  ASSERT_EQ(notes.read("output"), "");
  const Files after = to.files();
  const int operations = std::stoi(notes.read("count"));
  ASSERT_GE(operations, 90);
  for (const auto& [name, bytes] : after) {
    const bool changes = name != "group_09.ini" && before.contains(name);
    EXPECT_TRUE(!changes || bytes != before.at(name)) << name;
  }

  for (const std::string kind : {"28", "5", "13", "kill", "term"}) {  // ENOSPC, EIO, EACCES
    if (kind == "kill" && GetParam() == Shared) continue;             // is written in place
    std::string failing;  // the writers that say that they fail, one after the other
    for (int at = 1; at <= operations && !HasFailure(); ++at) {
      SCOPED_TRACE("operation " + std::to_string(at) + ": " + kind);
      restore(old_folder, old_files);
      restore(to, before);
      const int status = save(old_folder, to, notes, at, kind);
      const std::string output = notes.read("output");
      Files files = to.files();
      for (const auto& [name, bytes] : files) {
        const bool known = before.contains(name) || after.contains(name);
        if (kind == "kill" && !known) continue;  // a temporary that nobody was left to remove
        EXPECT_TRUE((before.contains(name) && bytes == before.at(name)) ||
                    (after.contains(name) && bytes == after.at(name)))
            << name << " is neither old nor new";
      }
      for (const auto& [name, bytes] : before) {
        EXPECT_TRUE(files.contains(name) || !after.contains(name)) << name << " is lost";
      }
      if (kind == "kill") {
        EXPECT_EQ(status, SIGKILL);
        EXPECT_EQ(save(old_folder, to, notes, 0, ""), 0);
        files = to.files();
        for (const char* name : {"kestrel.ini", "jobs.ini", "jobsSTS.ini", "sensor.ini"}) {
          EXPECT_EQ(files[name], after.at(name));
        }
      } else if (kind == "term" || status == 0) {  // or an operation that the save can do without
        EXPECT_EQ(status, kind == "term" ? SIGTERM : 0);
        EXPECT_EQ(output, "");
        if (kind == "13") files.erase("group_08.ini");  // stays when it may not be deleted
        EXPECT_EQ(files, after);
      } else {
        EXPECT_EQ(WEXITSTATUS(status), 1);
        EXPECT_TRUE(output.ends_with("INI fail " + kind)) << output;
        const std::string writer = output.substr(2, output.find("INI") - 2);
        if (!failing.ends_with(writer)) failing += writer;
      }
    }
    const bool fails = kind != "kill" && kind != "term";
    EXPECT_EQ(failing, fails ? "SaveKestrelSaveJobsSaveJobsSTSSaveGroupsSaveSensor" : "");
  }
  EXPECT_EQ(fs::is_symlink(jobs), GetParam() == Linked);
  EXPECT_EQ(fs::hard_link_count(jobs), GetParam() == Shared ? 2U : 1U);
}

INSTANTIATE_TEST_SUITE_P(Files, Fault, testing::Values(Old, None, Linked, Shared));

#endif

TEST(FailedSave, OutlivesALimitOfTheFileSize) {
  const Folder folder;
  const Folder::Files before = folder.files();
  Operator op(folder, {.limits = {{RLIMIT_FSIZE, 1000}}});
  op.open("1/1");
  op.type("Attic\r");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_TRUE(op.shows("SaveKestrelINI fail " + std::to_string(EFBIG))) << op.screen();
  EXPECT_TRUE(op.shows("The changes could not be saved")) << op.screen();
  EXPECT_EQ(folder.files(), before);
}

}  // namespace
