#include <fnmatch.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

#include "config/group_profile.h"
#include "config/store.h"
#include "tests/failing_calls.h"
#include "tests/tables.h"
#include "tui/diag.h"
#include "tui/terminal.h"

namespace {

namespace fs = std::filesystem;
using Files = Folder::Files;

const std::string rescue_line = "\n\rThe files as they should be: ";

/// Changes something in every file, or in kestrel.ini alone for "name". Everything that is called
/// "leaves" does so, and a UPS that leaves changes the numbers of the others. Values and not steps,
/// so that a second run changes nothing more.
void change(const std::string& what) {
  if (what == "name" || what == "all") INI.system.Name.assign("changed");
  const bool moves = INI.ups[0].Name.view() == "leaves";
  if (moves) INI.ups[0] = {};
  for (Group& group : INI.group) {
    if (group.Name.view() == "leaves") group = {};
    if (group.Name.empty()) continue;
    for (std::uint16_t& member : group.UPS) {
      if (moves && member != 0) --member;
    }
    if (what == "all") group.UPSShutdownDelay = 4711;
  }
  if (what != "all") return;
  INI.job[0].LogDelay = INI.job_state[0].LogDelay = 4711;
  INI.sensor[0].Name.assign("changed");
}

/// Does `work` in a process of its own, where a save that fails rescues to the folder `rescue`.
/// Returns the status as waitpid does; what has been printed goes to `output`.
int apart(const std::string& rescue, std::string& output, const std::function<int()>& work) {
  const int printed = memfd_create("output", 0);
  const pid_t child = fork();
  if (child == 0) {
    setenv("TMPDIR", rescue.c_str(), 1);
    dup2(printed, STDOUT_FILENO);
    const int result = work();
    flush();
    _exit(result);
  }
  int status = -1;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  output = read_file("/proc/self/fd/" + std::to_string(printed));
  close(printed);
  return status;
}

/// The folder that a save says it has rescued to, without a slash at its end.
std::string rescued_to(const std::string& output) {
  const std::size_t at = output.find(rescue_line);
  return at == std::string::npos ? "" : output.substr(at + rescue_line.size());
}

// --- Rows of nets.txt ---------------------------------------------------------------------------

/// Runs commands, which may call what tests/data/nets.sh defines.
bool run(const Folder& folder, const std::string& commands) {
  const std::string start = "set -e; cd " + folder.path() + "; . ./.functions\n";
  return std::system((start + commands).c_str()) == 0;
}

std::string error_name(int error) {
  const char* const name = strerrorname_np(error);
  return name == nullptr ? "start" : name;  // 255
}

/// The number of an error, 0 when there is none of that name.
int error_named(const std::string& name) {
  int error = 133;
  while (error > 0 && error_name(error) != name) --error;
  return error;
}

/// Does `work` as a cell says: after its commands, and with what follows an "@", which happens at a
/// call about a file: "call file ERROR" or, once, "call file commands".
void work_after(const Folder& folder, const std::string& cell, const std::string& last,
                const std::function<void()>& work) {
  const std::size_t mark = std::min(cell.find('@'), cell.size());
  if (!run(folder, cell.substr(0, mark) + "\n" + last)) _exit(254);
  char call[32] = "";
  char file[32] = "*";
  int length = 0;
  std::sscanf(cell.c_str() + mark, "@ %31s %30s %n", call, file + 1, &length);
  std::string event = cell.substr(mark + static_cast<std::size_t>(length));
  const int error = error_named(event);
  const auto watch = [&](const Call& c) {
    if (c.name != call || fnmatch(file, c.path.c_str(), 0) != 0 || event.empty()) return 0;
    if (error == 0 && !run(folder, std::exchange(event, ""))) _exit(254);
    return error;
  };
  with_calls(watch, work);
}

/// Loads, changes and saves as a row says. Returns the error, 255 for a start that fails.
int save(const Folder& folder, const Line& line) {
  constexpr uid_t nobody = 65534;
  const bool drops = line[0] != "root" && geteuid() == 0;
  if (drops && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0))
    return 254;
  if (line[0].starts_with("0")) umask(static_cast<mode_t>(std::stoi(line[0], nullptr, 8)));
  setenv("HOME", folder.path().c_str(), 1);
  if (chdir(folder.path().c_str()) != 0) return 254;
  folder.use();
  int error = 255;
  work_after(folder, line[1], "note", [&] { error = LoadINI() == 0 ? 0 : 255; });
  if (error != 0) return error;
  change(line[3]);
  const std::string profile = line[3].starts_with("profile ") ? line[3].substr(8) : "";
  work_after(folder, line[2], "", [&] {
    error = profile.empty() ? SaveINI() : SaveGroupProfile(profile.c_str(), INI.group[0].events);
  });
  for (const std::string& kept : foreign_changes()) report(("\n\r" + kept).c_str());
  return error;
}

TEST(Saving, SparesKeepsAndRefuses) {
  const std::string functions = read_file(source_dir() + "/tests/data/nets.sh");
  const Table nets = read_tables("nets.txt").at(0);
  for (const Line& line : nets.lines) {
    SCOPED_TRACE(std::to_string(line.number) + ": " + line[1] + " | " + line[2] + " | " + line[6]);
    if (line[0] == "root" && geteuid() != 0) continue;
    const Folder folder;
    folder.write(".functions", functions);
    const bool gives = line[0] != "root" && geteuid() == 0;
    ASSERT_TRUE(run(folder, gives ? "mkdir rescue; chown -R 65534:65534 ." : "mkdir rescue"));
    std::string output;
    const int status = apart(folder.path("rescue"), output, [&] { return save(folder, line); });
    if (fs::exists(folder.path("rescue/.skip"))) continue;  // a file system without something
    EXPECT_EQ(error_name(WEXITSTATUS(status)), line[4]);
    EXPECT_EQ(fnmatch(line[5].c_str(), output.c_str(), 0), 0) << output;
    const std::string rescued = rescued_to(output);
    EXPECT_TRUE(
        run(folder, "rescued='" + rescued + "'\n" + line[6] + "\nno ls -d *.ini.?????? 2>&-"));
    fs::remove_all(rescued);
  }
}

// --- A fault in each operation ------------------------------------------------------------------

/// The files that change, in the order in which a save stages them, with their writers.
const std::pair<const char*, const char*> staging[] = {
    {"kestrel.ini", "Kestrel"}, {"jobs.ini", "Jobs"},       {"jobsSTS.ini", "JobsSTS"},
    {"group_00.ini", "Groups"}, {"group_01.ini", "Groups"}, {"group_02.ini", "Groups"},
    {"sensor.ini", "Sensor"},
};

/// The demo configuration without jobsSTS.ini, with five groups, two of which leave. If numbers
/// move the first UPS leaves too.
Files configuration(bool numbers_move) {
  std::string values = numbers_move ? "UPS_00.Name=\"leaves\"" : "UPS_00.Name=\"stays\"";
  for (const char* const name : {"0/stays", "1/stays", "2/leaves", "3/stays", "4/leaves"}) {
    const std::string file = "; group_0" + std::string(name, 1) + ".ini:";
    values.append(file).append("Common.Name=\"").append(name + 2).append("\"");
    values.append(file).append("UPS.UPS_00=2; UPS_01=3");
  }
  Files files = demo_with(values);
  files.erase("jobsSTS.ini");
  files.erase("ups_shut.scr");  // no save knows it
  return files;
}

bool has(const Files& files, const Files::value_type& file) {
  const auto at = files.find(file.first);
  return at != files.end() && at->second == file.second;
}

/// A program that was killed had nobody left to remove its temporary file, nor to put back the old
/// contents of the file that it wrote in place. Groups may miss members in a swap that stopped
/// while numbers moved.
void expect_old_or_new(const Files& files, const Files& before, const Files& after, bool killed,
                       bool moved) {
  for (const auto& file : files) {
    const bool temporary = !before.contains(file.first) && !after.contains(file.first);
    const bool in_place = file.first == "sensor.ini" || file.first == "shared";
    EXPECT_TRUE(has(before, file) || has(after, file) || (killed && (temporary || in_place)) ||
                (moved && file.first.starts_with("group_")))
        << file.first << " is neither old nor new";
  }
  for (const auto& [name, bytes] : before) {
    EXPECT_TRUE(files.contains(name) || !after.contains(name)) << name << " is lost";
  }
}

/// The files before that of the writer that failed are new. It and those after it are old.
void expect_new_before(const std::string& failed, const Files& files, const Files& after) {
  const auto is_new = [&](const auto& file) { return has(files, *after.find(file.first)); };
  const auto old = std::find_if_not(std::begin(staging), std::end(staging), is_new);
  EXPECT_TRUE(old != std::end(staging) && old->second == failed);
  EXPECT_TRUE(std::none_of(old, std::end(staging), is_new));
}

/// The folder holds all files of a complete save, for nobody else. Removes it.
void expect_rescue(const std::string& folder, const Files& after) {
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
  Files missing = after;
  // Another name, a further link, and the file of a group that has moved and is left over.
  for (const char* const name : {"real", "shared", "group_04.ini"}) missing.erase(name);
  for (const auto& file : fs::directory_iterator(folder)) {
    EXPECT_EQ(file.status().permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(has(missing, {file.path().filename(), read_file(file.path())})) << file.path();
    missing.erase(file.path().filename());
  }
  EXPECT_TRUE(missing.empty());
  fs::remove_all(folder);
}

class FailedSave : public testing::TestWithParam<bool> {};

TEST_P(FailedSave, LeavesEveryFileOldOrNewAndRescuesAll) {
  if (access("/dev/shm", W_OK | X_OK) == 0) setenv("TMPDIR", "/dev/shm", 1);  // no disk is needed
  const bool numbers_move = GetParam();
  const Folder folder(configuration(numbers_move));
  const Folder rescue(Files{});
  fs::rename(folder.path("jobs.ini"), folder.path("real"));
  fs::create_symlink("real", folder.path("jobs.ini"));
  fs::create_hard_link(folder.path("sensor.ini"), folder.path("shared"));
  const Files before = folder.files();
  folder.use();
  const auto save = [](const std::function<int(const Call&)>& watch) {
    int error = LoadINI();
    change("all");
    with_calls(watch, [&] { error = SaveINI(); });
    return error;
  };
  std::vector<std::string> calls;
  ASSERT_EQ(save([&](const Call& call) { return calls.emplace_back(call.name), 0; }), 0);
  const Files after = folder.files();
  // All is flushed, and sensor.ini has been written in place, before the first file is swapped.
  const auto first = std::make_reverse_iterator(std::find(calls.begin(), calls.end(), "rename"));
  const auto staged =
      static_cast<std::size_t>(calls.rend() - std::find(first, calls.rend(), "fsync"));
  const std::set<std::string> writes = {"write", "fsync", "close", "lseek", "ftruncate"};
  ASSERT_GE(staged, 80U);
  for (const int kind : {ENOSPC, EIO, EACCES, -SIGKILL, -SIGTERM}) {
    std::string failing;  // the writers that say that they fail, one after the other
    for (std::size_t at = 1; at <= calls.size() && !HasFailure(); ++at) {
      const std::string& call = calls[at - 1];
      SCOPED_TRACE("operation " + std::to_string(at) + ", " + call + ": " + std::to_string(kind));
      folder.hold(before);
      std::string output;
      const int status = apart(rescue.path(), output, [&] {
        std::size_t count = 0;
        return save([&](const Call&) { return ++count == at ? kind : 0; }) == 0 ? 0 : 1;
      });
      Files files = folder.files();
      const bool swapping = at > staged;
      expect_old_or_new(files, before, after, kind == -SIGKILL,
                        numbers_move && swapping && status != 0);
      if (kind == -SIGKILL) {
        EXPECT_EQ(status, SIGKILL);
      } else if (kind == -SIGTERM || status == 0) {  // or an operation that a save can do without
        EXPECT_EQ(status, kind == -SIGTERM ? SIGTERM : 0);
        EXPECT_EQ(output, "");
        if (call == "unlink") files.erase("group_03.ini");  // stays when it may not be deleted
        EXPECT_EQ(files, after);
      } else {
        EXPECT_EQ(WEXITSTATUS(status), 1);
        const std::string writer = output.substr(6, output.find("INI") - 6);
        const std::string message = "\n\rSave" + writer + "INI fail " + std::to_string(kind);
        ASSERT_TRUE(output.starts_with(message + rescue_line + rescue.path())) << output;
        expect_rescue(rescued_to(output), after);
        if (!swapping && (kind != EACCES || writes.contains(call))) {
          EXPECT_EQ(files, before);
        } else if (!swapping) {
          expect_new_before(writer, files, after);
        }
        if (!failing.ends_with(writer)) failing += writer;
      }
      EXPECT_TRUE(rescue.files().empty());
    }
    std::string all = "KestrelJobsJobsSTSGroupsSensor";
    all.append(numbers_move ? "Groups" : "").append("KestrelJobsJobsSTSGroups");
    EXPECT_EQ(failing, kind < 0 ? "" : all) << kind;
  }
  EXPECT_TRUE(fs::is_symlink(folder.path("jobs.ini")));
  EXPECT_EQ(fs::hard_link_count(folder.path("sensor.ini")), 2U);
}

INSTANTIATE_TEST_SUITE_P(Numbers, FailedSave, testing::Bool());

}  // namespace
