#include "config/replace_file.h"

#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>

#include "tests/folder.h"

namespace {

namespace fs = std::filesystem;

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
class Place : public testing::Test {
 protected:
  Place() {
    for (const char* name : {"d", "e"}) fs::create_directory(path(name));
    folder.write("d/f", old_text);
    for (const char* name : {"", "d", "e", "d/f"}) {
      if (geteuid() == 0 && chown(path(name).c_str(), nobody, nobody) != 0) ADD_FAILURE();
    }
  }
  ~Place() override { fs::permissions(path("d"), fs::perms::owner_all); }

  std::string path(const std::string& name) const { return folder.path(name); }

  struct stat info(const std::string& name) const {
    struct stat info = {};
    EXPECT_EQ(stat(path(name).c_str(), &info), 0) << name;
    return info;
  }

  std::size_t count(const std::string& name) const {
    const fs::directory_iterator entries(path(name));
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }

  const Folder folder{Folder::Files{}};
};

struct Case {
  const char* name;
  std::function<void(const Folder&)> prepare;
  const char* target;     // the file that has the contents afterwards
  int error;              // of the replacement of d/f
  bool swapped;           // another file took the place of the old one
  std::size_t in_folder;  // entries of d afterwards
};

void chmod_in(const Folder& folder, const char* name, mode_t mode) {
  EXPECT_EQ(chmod(folder.path(name).c_str(), mode), 0);
}

/// Makes d/f a link to `to`.
void link_to(const Folder& folder, const std::string& to) {
  folder.remove("d/f");
  fs::create_symlink(to, folder.path("d/f"));
}

const Case cases[] = {
    {"a plain file", [](const Folder&) {}, "d/f", 0, true, 1},
    {"a file that may not be written", [](const Folder& f) { chmod_in(f, "d/f", 0444); }, "d/f",
     EACCES, false, 1},
    {"a file that may not be read", [](const Folder& f) { chmod_in(f, "d/f", 0200); }, "d/f", 0,
     true, 1},
    {"a folder that may not be written", [](const Folder& f) { chmod_in(f, "d", 0555); }, "d/f", 0,
     false, 1},
    {"neither of both", [](const Folder& f) { chmod_in(f, "d", 0555), chmod_in(f, "d/f", 0444); },
     "d/f", EACCES, false, 1},
    {"a folder that may not be listed", [](const Folder& f) { chmod_in(f, "d", 0333); }, "d/f", 0,
     true, 1},
    {"a hard link", [](const Folder& f) { fs::create_hard_link(f.path("d/f"), f.path("e/g")); },
     "e/g", 0, false, 1},
    {"a link to another folder",
     [](const Folder& f) {
       fs::rename(f.path("d/f"), f.path("e/f"));
       fs::create_symlink("../e/f", f.path("d/f"));
     },
     "e/f", 0, true, 1},
    {"a link to a link by its full name",
     [](const Folder& f) {
       fs::rename(f.path("d/f"), f.path("e/f"));
       fs::create_symlink("f", f.path("e/g"));
       fs::create_symlink(f.path("e/g"), f.path("d/f"));
     },
     "e/f", 0, true, 1},
};

TEST_F(Place, TakesTheContentsAndKeepsTheRest) {
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    for (const char* name : {"d/f", "e/f", "e/g"}) folder.remove(name);
    folder.write("d/f", old_text);
    if (geteuid() == 0) {
      EXPECT_EQ(chown(path("d/f").c_str(), nobody, nobody), 0);
    }
    chmod_in(folder, "d/f", 0640);
    c.prepare(folder);
    const struct stat before = info("d/f");
    const auto type = fs::symlink_status(path("d/f")).type();

    EXPECT_EQ(without_rights([&] { return replace_file(path("d/f"), new_text); }), c.error);

    chmod_in(folder, "d", 0755);
    const struct stat after = info("d/f");
    EXPECT_EQ(fs::symlink_status(path("d/f")).type(), type);
    EXPECT_EQ(std::pair(after.st_uid, after.st_gid), std::pair(before.st_uid, before.st_gid));
    EXPECT_EQ(after.st_mode, before.st_mode);
    EXPECT_EQ(after.st_nlink, before.st_nlink);
    EXPECT_EQ(after.st_ino != before.st_ino, c.swapped);
    EXPECT_EQ(count("d"), c.in_folder);
    EXPECT_EQ(folder.read(c.target), c.error == 0 ? new_text : old_text);
  }
}

TEST_F(Place, GivesANewFileThePermissionsThatTheUmaskLeaves) {
  for (const mode_t mask : {022U, 027U, 0U}) {
    folder.remove("d/f");
    EXPECT_EQ(without_rights([&] {
                umask(mask);
                return replace_file(path("d/f"), new_text);
              }),
              0);
    EXPECT_EQ(info("d/f").st_mode, S_IFREG | (0666 & ~mask));
    EXPECT_EQ(folder.read("d/f"), new_text);
    EXPECT_EQ(count("d"), 1U);
  }
}

TEST_F(Place, CreatesTheFileThatALinkPromises) {
  link_to(folder, "../e/made");
  EXPECT_EQ(replace_file(path("d/f"), new_text), 0);
  EXPECT_TRUE(fs::is_symlink(path("d/f")));
  EXPECT_EQ(folder.read("e/made"), new_text);
  EXPECT_EQ(count("e"), 1U);
}

TEST_F(Place, SaysWhyThereIsNoFile) {
  struct Refusal {
    std::string what;
    std::function<void()> prepare;
    int error;
  };
  const Refusal refusals[] = {
      {"a folder in its place", [&] { fs::create_directory(path("d/f")); }, EISDIR},
      {"a pipe that nobody reads",
       [&] { mkfifo(path("d/f").c_str(), 0), chmod_in(folder, "d/f", 0666); }, ENXIO},
      {"a link to itself", [&] { link_to(folder, "f"); }, ELOOP},
      {"a link into nowhere", [&] { link_to(folder, "../none/f"); }, ENOENT},
      {"no right to create it", [&] { chmod_in(folder, "d", 0555); }, EACCES},
      {"no folder", [&] { folder.remove("d"); }, ENOENT},
  };
  for (const Refusal& r : refusals) {
    SCOPED_TRACE(r.what);
    folder.remove("d/f");
    r.prepare();
    EXPECT_EQ(without_rights([&] { return replace_file(path("d/f"), new_text); }), r.error);
    fs::create_directory(path("d"));
    chmod_in(folder, "d", 0777);
    EXPECT_LE(count("d"), 1U);
    EXPECT_FALSE(fs::is_regular_file(fs::symlink_status(path("d/f"))));
  }
}

TEST_F(Place, KeepsTheGroupInAFolderThatGivesItsOwn) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can make such a folder";
  EXPECT_EQ(chown(path("d").c_str(), 0, 1234), 0);
  chmod_in(folder, "d", 02777);
  EXPECT_EQ(chown(path("d/f").c_str(), 0, 0), 0);
  EXPECT_EQ(replace_file(path("d/f"), new_text), 0);
  EXPECT_EQ(info("d/f").st_gid, 0U);
}

TEST_F(Place, IsFlushedAsFarAsItsRightsGo) {
  chmod_in(folder, "d", 0333);
  EXPECT_EQ(without_rights([&] { return sync_folder(path("d/f")); }), 0);
  EXPECT_EQ(sync_folder(path("none/f")), ENOENT);
}

TEST_F(Place, WritesIntoAPipe) {
  folder.remove("d/f");
  EXPECT_EQ(mkfifo(path("d/f").c_str(), 0600), 0);
  const int reader = open(path("d/f").c_str(), O_RDONLY | O_NONBLOCK);
  EXPECT_EQ(replace_file(path("d/f"), new_text), 0);
  char bytes[64];
  const ssize_t got = read(reader, bytes, sizeof bytes);
  EXPECT_EQ(std::string(bytes, got > 0 ? static_cast<std::size_t>(got) : 0), new_text);
  close(reader);
}

}  // namespace
