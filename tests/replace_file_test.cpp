#include "config/replace_file.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "tests/tables.h"

namespace {

constexpr uid_t nobody = 65534;
const std::string old_text = "old and rather longer than what comes\n";
const std::string new_text = "new\n";

/// The result of `work` in a process without the rights of root, 0 to 255.
int without_rights(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    const bool root = geteuid() == 0;
    if (root && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0)) {
      _exit(255);
    }
    _exit(work());
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 255;
}

/// A folder "d" with a file "f", both of whoever `without_rights` works as, and a folder "e".
struct Place {
  Place() {
    run("mkdir d e");
    folder.write("d/f", old_text);
    run("chmod 640 d/f");
    if (geteuid() == 0) run("chown 65534:65534 . d e d/f");
  }
  ~Place() { run("test ! -d d || chmod 755 d"); }

  void run(const std::string& commands) const {
    EXPECT_EQ(std::system(("cd " + folder.path() + "; " + commands).c_str()), 0) << commands;
  }

  /// Everything in the folders but the contents of files: types, modes, links and owners.
  std::string state() const {
    run("find d e -printf '%p %y %m %n %U:%G %l\\n' 2>/dev/null | sort >state");
    return folder.read("state");
  }

  struct stat info(const std::string& name) const {
    struct stat info = {};
    stat(folder.path(name).c_str(), &info);
    return info;
  }

  const Folder folder{Folder::Files{}};
};

/// Who replaces a file: its owner, who may have a umask such as "027", or root.
int replace(const Place& place, const std::string& who) {
  const auto work = [&] { return replace_file(place.folder.path("d/f"), new_text); };
  if (who == "root") return work();
  return without_rights([&] {
    if (who != "owner") umask(static_cast<mode_t>(std::stoi(who, nullptr, 8)));
    return work();
  });
}

TEST(ReplaceFile, KeepsEverythingButTheContents) {
  for (const Table& table : read_tables("replace_file.txt")) {
    for (const Line& line : table.lines) {
      SCOPED_TRACE(line[0]);
      if (line[1] == "root" && geteuid() != 0) continue;
      const Place place;
      place.run(line[0]);
      const std::string state = place.state();
      const ino_t number = place.info("d/f").st_ino;
      EXPECT_EQ(strerrorname_np(replace(place, line[1])), line[2]);
      EXPECT_EQ(place.info("d/f").st_ino != number, line[3] == "swapped");
      if (!line[4].empty()) {
        EXPECT_EQ(place.folder.read(line[4]), line[2] == "0" ? new_text : old_text);
      }
      if (!line[5].empty()) {
        EXPECT_EQ(place.info("d/f").st_mode, S_IFREG | std::stoul(line[5], nullptr, 8));
        place.run("rm " + line[4]);
      }
      EXPECT_EQ(place.state(), state);
    }
  }
}

TEST(ReplaceFile, FlushesAFolderAsFarAsItsRightsGo) {
  const Place place;
  place.run("chmod 333 d");
  EXPECT_EQ(without_rights([&] { return sync_folder(place.folder.path("d/f")); }), 0);
  EXPECT_EQ(sync_folder(place.folder.path("none/f")), ENOENT);
}

}  // namespace
