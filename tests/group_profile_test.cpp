#include "config/group_profile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <bit>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

#include "config/fields.h"
#include "tests/folder.h"
#include "tui/diag.h"

namespace {

constexpr std::size_t record_size = 450;
const std::string not_opened = "\nCannot open file! ";
const std::string not_read = "\nRecord not readed - maybe end of file ! ";
const std::string no_room = "\nRecords is more that MAX_GROUP_EVENTS! ";
const std::string not_written = "\nRecord not writed - maybe disk full ! ";

/// A folder for a profile, one for the debug log, and the events of a group.
class Profile : public testing::Test {
 protected:
  Profile() {
    std::snprintf(ProgramDir, sizeof ProgramDir, "%s/", logs.path().c_str());
    bDebugLog = 1;
    std::memset(events, 0x5A, sizeof events);
  }
  ~Profile() override { bDebugLog = 0; }

  int load(const std::string& name) { return LoadGroupProfile(folder.path(name).c_str(), events); }
  int save(const std::string& name) { return SaveGroupProfile(folder.path(name).c_str(), events); }

  /// What has been logged since the last call.
  std::string log() {
    if (!logs.has("debugs.log")) return "";
    std::string text = logs.read("debugs.log");
    logs.remove("debugs.log");
    return text;
  }

  const Folder folder{Folder::Files{}};
  const Folder logs{Folder::Files{}};
  GroupEvent events[event_count];
};

bool empty(const GroupEvent& event) {
  const GroupEvent nothing{};
  return std::memcmp(&event, &nothing, sizeof event) == 0;
}

/// A record whose bytes are all different from those beside them, with text behind the terminators.
std::string sample_record(int seed = 0) {
  std::string record;
  for (std::size_t i = 0; i < record_size; ++i) {
    record += static_cast<char>(static_cast<std::size_t>(seed) + 7 * i + i / 256 + 1);
  }
  record[40] = record[340] = '\0';
  return record;
}

unsigned low_first(const std::string& record, std::size_t offset) {
  return static_cast<unsigned char>(record[offset]) |
         static_cast<unsigned>(static_cast<unsigned char>(record[offset + 1])) << 8;
}

TEST_F(Profile, HasItsNumbersLowByteFirst) {
  const std::string record = sample_record();
  folder.write("p", record);
  EXPECT_EQ(load("p"), 0);
  std::size_t at = 0;
  for (const Field& field : families_of(group_file)[2].fields) {
    if (field.kind == Kind::text) {
      EXPECT_EQ(std::string(bytes_at(field, &events[0]), field.width),
                record.substr(at, field.width));
    } else {
      EXPECT_EQ(number_at(field, &events[0]), low_first(record, at)) << field.key;
    }
    at += field.width;
  }
  EXPECT_EQ(at, record_size);

  EXPECT_EQ(save("q"), 0);
  EXPECT_EQ(folder.read("q"), record);
}

TEST_F(Profile, IsSwappedOnAMachineOfTheOtherByteOrder) {
  EXPECT_EQ(test_big_endian(), std::endian::native == std::endian::big ? 1 : 0);
  EXPECT_EQ(swap_word(0x1234), 0x3412);
  EXPECT_EQ(swap_word(0xFF00), 0x00FF);

  const std::string before = sample_record();
  std::memcpy(&events[0], before.data(), record_size);
  swap_event_data(events[0]);
  const auto* after = reinterpret_cast<const char*>(&events[0]);
  for (std::size_t i = 0; i < record_size; ++i) {
    const bool in_text = (i >= 34 && i < 294) || i >= 330;
    EXPECT_EQ(after[i], before[in_text ? i : i ^ 1U]) << i;
  }
  swap_event_data(events[0]);
  EXPECT_EQ(std::string(after, record_size), before);
}

TEST_F(Profile, LoadsTheWholeRecordsThereAre) {
  const struct {
    std::size_t size;
    int events;
    std::string message;
  } cases[] = {
      {0, 0, not_read},
      {449, 0, not_read},
      {450, 1, not_read},
      {451, 1, not_read},
      {64 * record_size - 1, 63, not_read},
      {64 * record_size, 64, no_room},
      {65 * record_size, 64, no_room},
  };
  std::string bytes;
  for (int i = 0; i < 65; ++i) bytes += sample_record(i);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.size);
    folder.write("p", bytes.substr(0, c.size));
    std::memset(events, 0x5A, sizeof events);
    EXPECT_EQ(load("p"), 0);
    EXPECT_EQ(log(), c.message);
    for (int i = 0; i < c.events; ++i) {
      EXPECT_EQ(events[i].job.VoiceDelay, low_first(sample_record(i), 328)) << i;
    }
    for (int i = c.events; i < event_count; ++i) EXPECT_TRUE(empty(events[i])) << i;
  }
}

TEST_F(Profile, StoresTheEventsInUseOneBehindTheOther) {
  folder.write("p", sample_record() + sample_record(1));
  load("p");
  events[63] = events[1];
  events[1].Type[0] = 0;  // all the rest of it stays
  EXPECT_EQ(save("p"), 0);
  EXPECT_EQ(folder.read("p"), sample_record() + sample_record(1));

  for (GroupEvent& event : events) event.Type[0] = 0;
  EXPECT_EQ(save("p"), 0);
  EXPECT_EQ(folder.read("p"), "");
  log();
}

TEST_F(Profile, KeepsTheEventsWhenItCannotBeOpened) {
  folder.write("text", "");
  mkdir(folder.path("sub").c_str(), 0777);
  mkfifo(folder.path("pipe").c_str(), 0666);
  const struct {
    std::string name;
    int load_error;
    int save_error;
  } cases[] = {
      {"none", ENOENT, 0},          {"gone/p", ENOENT, ENOENT}, {"sub", EISDIR, EISDIR},
      {"text/p", ENOTDIR, ENOTDIR}, {"pipe", 0, ENXIO},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    std::memset(events, 0x5A, sizeof events);
    EXPECT_EQ(load(c.name), c.load_error);
    EXPECT_EQ(empty(events[0]), c.load_error == 0);
    EXPECT_EQ(log(), c.load_error == 0 ? not_read : not_opened);
    EXPECT_EQ(save(c.name), c.save_error);
    EXPECT_EQ(log(), c.save_error == 0 ? "" : not_opened);
  }
}

/// A user without rights for the length of a block, where the tests run as root.
class Nobody {
 public:
  Nobody() : user_(geteuid()) { EXPECT_TRUE(user_ != 0 || seteuid(65534) == 0); }
  ~Nobody() { EXPECT_TRUE(user_ != 0 || seteuid(user_) == 0); }

 private:
  uid_t user_;
};

TEST_F(Profile, IsRefusedInAFolderWithoutWritePermission) {
  folder.write("old", sample_record());
  chmod(folder.path("old").c_str(), 0444);
  chmod(folder.path().c_str(), 0555);
  chmod(logs.path().c_str(), 0777);
  {
    const Nobody nobody;
    EXPECT_EQ(save("new"), EACCES);
    EXPECT_EQ(save("old"), EACCES);
    EXPECT_EQ(log(), not_opened + not_opened);
    EXPECT_EQ(load("old"), 0);
  }
  chmod(folder.path().c_str(), 0755);
  EXPECT_EQ(events[0].Type[0], low_first(sample_record(), 0));
  EXPECT_FALSE(folder.has("new"));
}

TEST_F(Profile, SurvivesAFullDisk) {
  EXPECT_EQ(SaveGroupProfile("/dev/full", events), 0);
  EXPECT_EQ(log(), not_written);

  folder.write("old", sample_record());
  const auto names = folder.names();
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before;
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{5 * record_size + 100, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(save("old"), 0);
  EXPECT_EQ(save("new"), 0);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(log(), not_written + not_written);
  EXPECT_EQ(folder.read("old"), sample_record());
  EXPECT_EQ(folder.names(), names);  // no part of the new one, nothing temporary
}

}  // namespace
