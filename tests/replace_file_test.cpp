#include "config/replace_file.h"

#include <fcntl.h>
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
class Place {
 public:
  Place() {
    run("mkdir d e");
    folder.write("d/f", old_text);
    run("chmod 640 d/f");
    if (geteuid() == 0) run("chown 65534:65534 . d e d/f");
  }
  ~Place() { run("test ! -d d || chmod 755 d"); }

  std::string path(const std::string& name) const { return folder.path(name); }

  void run(const std::string& commands) const {
    EXPECT_EQ(std::system(("cd " + folder.path() + "; " + commands).c_str()), 0) << commands;
  }

  /// Everything in the folders but the contents of files: types, modes, links and owners.
  std::string state() const {
    run("find d e -printf '%p %y %m %n %U:%G %l\\n' 2>/dev/null | sort >state");
    return folder.read("state");
  }

  ino_t number() const {
    struct stat info = {};
    return stat(path("d/f").c_str(), &info) == 0 ? info.st_ino : 0;
  }

  int replace() const { return replace_file(path("d/f"), new_text); }

  const Folder folder{Folder::Files{}};
};

TEST(ReplaceFile, KeepsEverythingButTheContents) {
  for (const Table& table : read_tables("replace_file.txt")) {
    for (const Line& line : table.lines) {
      SCOPED_TRACE(line[0]);
      if (line[1] == "root" && geteuid() != 0) continue;
      const Place place;
      place.run(line[0]);
      const std::string state = place.state();
      const ino_t number = place.number();
      const auto work = [&] { return place.replace(); };
      EXPECT_EQ(strerrorname_np(line[1] == "root" ? work() : without_rights(work)), line[2]);
      EXPECT_EQ(place.state(), state);
      EXPECT_EQ(place.number() != number, line[3] == "swapped");
      if (line[4].empty()) continue;
      EXPECT_EQ(place.folder.read(line[4]), line[2] == "0" ? new_text : old_text);
    }
  }
}

TEST(ReplaceFile, CreatesAFileWithThePermissionsThatTheUmaskLeaves) {
  for (const mode_t mask : {022U, 027U, 0U}) {
    for (const std::string name : {"d/f", "e/made"}) {
      const Place place;
      place.run(name == "d/f" ? "rm d/f" : "ln -sf ../e/made d/f");
      EXPECT_EQ(without_rights([&] { return umask(mask), place.replace(); }), 0);
      EXPECT_EQ(place.folder.read(name), new_text);
      struct stat info = {};
      EXPECT_EQ(stat(place.path("d/f").c_str(), &info), 0);
      EXPECT_EQ(info.st_mode, S_IFREG | (0666 & ~mask));
      place.run("rm " + name + "; rm -f d/f; rmdir d e; mkdir d");  // nothing else is left
    }
  }
}

TEST(ReplaceFile, WritesIntoAPipe) {
  const Place place;
  place.run("rm d/f; mkfifo d/f");
  const int reader = open(place.path("d/f").c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(place.replace(), 0);
  char bytes[64];
  const ssize_t got = read(reader, bytes, sizeof bytes);
  EXPECT_EQ(std::string(bytes, got > 0 ? static_cast<std::size_t>(got) : 0), new_text);
  close(reader);
}

TEST(ReplaceFile, FlushesAFolderAsFarAsItsRightsGo) {
  const Place place;
  place.run("chmod 333 d");
  EXPECT_EQ(without_rights([&] { return sync_folder(place.path("d/f")); }), 0);
  EXPECT_EQ(sync_folder(place.path("none/f")), ENOENT);
}

}  // namespace
