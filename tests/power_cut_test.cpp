#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "config/store.h"
#include "tests/failing_calls.h"
#include "tests/tables.h"

namespace {

using Files = Folder::Files;

const std::string torn = "not flushed";

/// A name gets a file with these bytes, or loses its file.
using Change = std::pair<std::string, std::optional<std::string>>;

/// What a save does to the names of a folder, in a part for each flush of the folder. Of the
/// changes in a part a disk may keep any and lose any, and a file only keeps what was flushed
/// before it got its name.
struct Journal {
  int note(const Call& call) {
    const std::string name = call.path.substr(call.path.rfind('/') + 1);
    if (call.name == "write") {
      written[call.path] += call.bytes;
      if (name.ends_with(".ini")) parts.back().emplace_back(name, torn);
    } else if (call.name == "fsync") {
      ++flushes;
      flushed[call.path] = written[call.path];
      if (call.path == folder) parts.emplace_back();
    } else if (call.name == "rename") {
      const bool whole = flushed.contains(call.path) && flushed[call.path] == written[call.path];
      parts.back().emplace_back(call.other.substr(folder.size() + 1),
                                whole ? written[call.path] : torn);
    } else if (call.name == "unlink" && name.ends_with(".ini")) {
      parts.back().emplace_back(name, std::nullopt);
    }
    return 0;
  }

  const std::string folder;
  int flushes = 0;
  std::vector<std::vector<Change>> parts = {{}};
  std::map<std::string, std::string> written = {};
  std::map<std::string, std::string> flushed = {};
};

void apply(const Change& change, Files& files) {
  if (change.second)
    files[change.first] = *change.second;
  else
    files.erase(change.first);
}

/// The members of the groups in `INI`, by names. The file of a group that has moved is left over
/// with old numbers when its number is too high to be deleted: from `used` on, if the save `keeps`
/// it.
std::map<std::string, std::set<std::string>> members(int used, const Files& keeps) {
  std::map<std::string, std::set<std::string>> names;
  for (int number = 0; number < group_count; ++number) {
    const Group& group = INI.group[number];
    if (group.Name.empty()) continue;
    auto& members = names[std::string(group.Name.view())];
    if (number >= used && keeps.contains("group_0" + std::to_string(number) + ".ini")) continue;
    for (const std::uint16_t member : group.UPS) {
      if (member != 0) members.emplace(INI.ups[member - 1].Name.view());
    }
  }
  return names;
}

/// Takes UPSs and groups out and puts new UPSs in the place of others. The groups refer to the
/// numbers that the UPSs get by that.
void remove(const std::string& ups, const std::string& groups, const std::string& replaced) {
  INI.system.Name.assign("changed");
  for (const char slot : groups) INI.group[slot - '0'] = {};
  for (const char slot : ups) INI.ups[slot - '0'].Name.assign("");
  for (const char slot : replaced) INI.ups[slot - '0'].Name.assign("new");
  for (Group& group : INI.group) {
    for (std::uint16_t& member : group.UPS) {
      if (member == 0) continue;
      const auto slot = static_cast<char>('0' + member - 1);
      const auto before =
          std::count_if(ups.begin(), ups.end(), [&](char other) { return other < slot; });
      const bool leaves = (ups + replaced).find(slot) != std::string::npos;
      member = leaves ? 0 : static_cast<std::uint16_t>(member - before);
    }
  }
}

/// A disk, and what has to be found on it.
struct Disk {
  void check(const Files& files) {
    for (const auto& [name, bytes] : files) ASSERT_NE(bytes, torn) << name;
    folder.hold(files);
    folder.use();
    ASSERT_EQ(LoadINI(), 0);
    const auto found = members(used, after);
    for (const std::string& group : kept) EXPECT_TRUE(found.contains(group)) << group << " is lost";
    for (const auto& [group, names] : found) {
      for (const std::string& name : names) {
        EXPECT_TRUE(meant[group].contains(name)) << group << " has the member \"" << name << '"';
      }
    }
  }

  /// Every state in which a power cut can leave it.
  void cut_power(const Journal& journal, Files files) {
    for (const std::vector<Change>& part : journal.parts) {
      for (unsigned seen = 0; seen < 1U << part.size() && !testing::Test::HasFailure(); ++seen) {
        Files state = files;
        std::string shown = "of the last part, these were seen:";
        for (std::size_t i = 0; i < part.size(); ++i) {
          if ((seen >> i & 1U) == 0) continue;
          apply(part[i], state);
          shown += " " + part[i].first;
        }
        SCOPED_TRACE(shown);
        check(state);
      }
      for (const Change& change : part) apply(change, files);
    }
    EXPECT_EQ(files, after);
  }

  const Folder folder{Files{}};
  Files after = {};  // the save
  int used = group_count;
  std::set<std::string> kept = {};
  std::map<std::string, std::set<std::string>> meant = {};
};

TEST(PowerCut, LosesNoGroupAndShowsNoWrongMember) {
  const std::vector<Table> tables = read_tables("power_cuts.txt");
  Files files;
  for (const Line& line : tables.at(0).lines) put_values(files, line[0]);
  for (const Line& line : tables.at(1).lines) {
    SCOPED_TRACE(line.number);
    const Folder folder(files);
    folder.use();
    ASSERT_EQ(LoadINI(), 0);
    ASSERT_EQ(SaveINI(), 0);  // all files are there, in the form of the program
    ASSERT_EQ(LoadINI(), 0);
    const Files before = folder.files();
    Disk disk{.meant = members(group_count, {})};
    remove(line[0], line[1], line[2]);
    for (const Group& group : INI.group) {
      if (!group.Name.empty()) disk.kept.emplace(group.Name.view());
    }
    disk.used = static_cast<int>(disk.kept.size());
    Journal journal{folder.path()};
    with_calls([&](const Call& call) { return journal.note(call); },
               [] { EXPECT_EQ(SaveINI(), 0); });
    EXPECT_EQ(std::to_string(journal.flushes), line[3]);
    disk.after = folder.files();
    disk.cut_power(journal, before);
  }
}

}  // namespace
