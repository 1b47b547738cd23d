#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <utility>

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

struct Result {
  int status;  // as by waitpid
  std::string output;
  bool operator==(const Result&) const = default;
};

/// Thousands of saves need no disk.
Folder folder_in_memory() {
  const char* memory = "/dev/shm";
  if (access(memory, W_OK | X_OK) == 0) setenv("TMPDIR", memory, 1);
  return Folder(Files{});
}

/// The files of one case, in a folder without anything else: "old", where they are loaded from and
/// mostly saved to, and "new".
class Place {
 public:
  Place() {
    for (const char* name : {"old", "new", "elsewhere"}) fs::create_directory(folder_.path(name));
    restore("old", full_configuration());
  }

  std::string path(const std::string& name) const { return folder_.path(name); }

  /// Makes a folder hold these files and nothing else.
  void restore(const std::string& name, const Files& files) const {
    for (const auto& entry : fs::directory_iterator(path(name))) {
      if (!files.contains(entry.path().filename())) fs::remove(entry);
    }
    for (const auto& [file, bytes] : files) folder_.write((name + "/").append(file), bytes);
  }

  Files files(const std::string& name) const {
    Files files;
    for (const auto& entry : fs::directory_iterator(path(name))) {
      files[entry.path().filename()] = read_file(entry.path());
    }
    return files;
  }

  /// Runs the driver with a fault at operation `at`, 0 for none.
  Result save(const std::string& to, int at, const std::string& kind) const {
    const std::string output = path("output");
    std::string environment[] = {std::string("LD_PRELOAD=") + HARRIER_FAULTS,
                                 "FAULT_AT=" + std::to_string(at), "FAULT_KIND=" + kind,
                                 "FAULT_COUNT=" + path("count")};
    std::string arguments[] = {HARRIER_SAVE_DRIVER, path("old"), path(to)};
    char* envp[] = {environment[0].data(), environment[1].data(), environment[2].data(),
                    environment[3].data(), nullptr};
    char* argv[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                     O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t driver;
    EXPECT_EQ(posix_spawn(&driver, argv[0], &actions, nullptr, argv, envp), 0);
    posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    EXPECT_EQ(waitpid(driver, &status, 0), driver);
    return {status, read_file(output)};
  }

  int operations() const { return std::stoi("0" + read_file(path("count"))); }

 private:
  const Folder folder_ = folder_in_memory();
};

/// In which state the files are that the save replaces.
struct State {
  const char* name;
  const char* to;
  bool whole;  // also when the program is killed
  void (*prepare)(const Place& place);
};

const State states[] = {
    {"Old", "old", true, [](const Place&) {}},
    {"None", "new", true, [](const Place&) {}},
    {"Linked", "old", true,
     [](const Place& place) {
       fs::rename(place.path("old/jobs.ini"), place.path("elsewhere/jobs.ini"));
       fs::create_symlink("../elsewhere/jobs.ini", place.path("old/jobs.ini"));
     }},
    {"Shared", "old", false,
     [](const Place& place) {
       fs::create_hard_link(place.path("old/jobs.ini"), place.path("elsewhere/jobs.ini"));
     }},
};

class Fault : public testing::TestWithParam<State> {};

std::string failure_of(const std::string& output) {
  for (const char* writer : {"Kestrel", "Jobs", "JobsSTS", "Groups", "Sensor"}) {
    const std::string start = std::string("\n\rSave") + writer + "INI fail ";
    if (output.starts_with(start)) return output.substr(start.size());
  }
  return "no message";
}

TEST_P(Fault, LeavesEveryFileOldOrNew) {
  const State& state = GetParam();
  const Place place;
  state.prepare(place);
  const Files old_files = place.files("old");
  const Files before = place.files(state.to);
  const Files elsewhere = place.files("elsewhere");
  ASSERT_EQ(place.save(state.to, 0, ""), (Result{0, ""}));
  const Files after = place.files(state.to);
  const int operations = place.operations();
  ASSERT_GE(operations, 90);
  for (const auto& [name, bytes] : after) {
    if (name == "group_09.ini" || !before.contains(name)) continue;
    EXPECT_NE(bytes, before.at(name)) << name;
  }
  const auto kept = [&] {  // what a swap must not lose
    const std::string jobs = place.path("old/jobs.ini");
    return std::pair(fs::is_symlink(jobs), fs::hard_link_count(jobs));
  };
  const auto kept_before = kept();

  const std::string no_space = std::to_string(ENOSPC);
  const std::string io_error = std::to_string(EIO);
  int faults = 0;
  for (const std::string& kind :
       {no_space, io_error, std::to_string(EACCES), std::string("kill"), std::string("term")}) {
    if (kind == "kill" && !state.whole) continue;
    for (int at = 1; at <= operations; ++at, ++faults) {
      SCOPED_TRACE("operation " + std::to_string(at) + ": " + kind);
      place.restore("old", old_files);
      place.restore(state.to, before);
      place.restore("elsewhere", elsewhere);
      const Result result = place.save(state.to, at, kind);
      Files files = place.files(state.to);

      for (const auto& [name, bytes] : files) {
        const bool known = before.contains(name) || after.contains(name);
        if (kind == "kill" && !known) continue;  // a temporary that nobody was left to remove
        EXPECT_TRUE(known) << name << " is left";
        EXPECT_TRUE((before.contains(name) && bytes == before.at(name)) ||
                    (after.contains(name) && bytes == after.at(name)))
            << name << " is neither old nor new";
      }
      for (const auto& [name, bytes] : before) {
        EXPECT_TRUE(files.contains(name) || !after.contains(name)) << name << " is lost";
      }
      if (kind != "kill") {
        EXPECT_EQ(place.files("elsewhere").size(), elsewhere.size());
      }
      if (kind == "kill") {
        EXPECT_EQ(result.status, SIGKILL);
        EXPECT_EQ(place.save(state.to, 0, "").status, 0);
        files = place.files(state.to);
        for (const char* name : {"kestrel.ini", "jobs.ini", "jobsSTS.ini", "sensor.ini"}) {
          EXPECT_EQ(files[name], after.at(name));
        }
      } else if (kind == "term") {
        EXPECT_EQ(result.status, SIGTERM);
        EXPECT_EQ(files, after);
      } else if (result.status == 0) {
        EXPECT_EQ(files, after);  // an operation that the save can do without
        EXPECT_EQ(result.output, "");
      } else {
        EXPECT_EQ(WEXITSTATUS(result.status), 1);
        EXPECT_EQ(failure_of(result.output), kind);
      }
      if (HasFailure()) return;
    }
  }
  EXPECT_EQ(kept(), kept_before);
  std::printf("%d operations, %d faults\n", operations, faults);
}

INSTANTIATE_TEST_SUITE_P(Files, Fault, testing::ValuesIn(states),
                         [](const auto& state) { return state.param.name; });

struct Failure {
  const char* file;
  const char* message;
};

TEST(FailedSave, TellsTheOperatorWhichWriter) {
  const Failure cases[] = {
      {"kestrel.ini", "SaveKestrelINI fail 28"}, {"jobs.ini", "SaveJobsINI fail 28"},
      {"jobsSTS.ini", "SaveJobsSTSINI fail 28"}, {"group_00.ini", "SaveGroupsINI fail 28"},
      {"sensor.ini", "SaveSensorINI fail 28"},
  };
  for (const Failure& c : cases) {
    SCOPED_TRACE(c.file);
    const Folder folder;
    const std::string before = folder.read(c.file);
    Operator op(folder, {.environment = {{"LD_PRELOAD", HARRIER_FAULTS},
                                         {"FAULT_FILE", c.file},
                                         {"FAULT_AT", "1"},
                                         {"FAULT_KIND", std::to_string(ENOSPC)}}});
    op.open("1/1");
    op.type("Attic\r");
    EXPECT_EQ(op.quit("y"), 1);
    EXPECT_TRUE(op.shows(c.message)) << op.screen();
    EXPECT_TRUE(op.shows("The changes could not be saved")) << op.screen();
    EXPECT_EQ(folder.read(c.file), before);
    EXPECT_EQ(folder.value("kestrel.ini", "System", "Name") == "\"Attic\"",
              c.file != std::string("kestrel.ini"));
  }
}

#endif

TEST(FailedSave, OutlivesALimitOfTheFileSize) {
  const Folder folder;
  const Folder::Files before = folder.files();
  Operator op(folder, {.limits = {{RLIMIT_FSIZE, 1000}}});
  op.open("1/1");
  op.type("Attic\r");
  EXPECT_EQ(op.quit("y"), 1);
  EXPECT_TRUE(op.shows("SaveKestrelINI fail " + std::to_string(EFBIG))) << op.screen();
  EXPECT_EQ(folder.files(), before);
}

}  // namespace
