#include "config/group_profile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <bit>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <tuple>

#include "config/families.h"
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
}

TEST_F(Profile, IsSwappedOnAMachineOfTheOtherByteOrder) {
  EXPECT_EQ(test_big_endian(), std::endian::native == std::endian::big ? 1 : 0);
  EXPECT_EQ(swap_word(0x12FF), 0xFF12);
  const std::string before = sample_record();
  std::memcpy(&events[0], before.data(), record_size);
  swap_event_data(events[0]);
  for (std::size_t i = 0; i < record_size; ++i) {
    const bool in_text = (i >= 34 && i < 294) || i >= 330;
    EXPECT_EQ(reinterpret_cast<const char*>(&events[0])[i], before[in_text ? i : i ^ 1U]) << i;
  }
}

TEST_F(Profile, LoadsTheWholeRecordsThereAre) {
  std::string bytes;
  for (int i = 0; i < 65; ++i) bytes += sample_record(i);
  for (const std::size_t size : {0U, 449U, 450U, 451U, 28799U, 28800U, 29250U}) {
    SCOPED_TRACE(size);
    folder.write("p", bytes.substr(0, size));
    std::memset(events, 0x5A, sizeof events);
    EXPECT_EQ(load("p"), 0);
    EXPECT_EQ(log(), size < 64 * record_size ? not_read : no_room);
    for (std::size_t i = 0; i < event_count; ++i) {
      const bool whole = (i + 1) * record_size <= size;
      EXPECT_EQ(empty(events[i]), !whole) << i;
      EXPECT_EQ(events[i].job.VoiceDelay, whole ? low_first(bytes, i * record_size + 328) : 0) << i;
    }
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
}

TEST_F(Profile, KeepsTheEventsWhenItCannotBeOpened) {
  folder.write("text", "");
  mkdir(folder.path("sub").c_str(), 0777);
  mkfifo(folder.path("pipe").c_str(), 0666);
  const std::tuple<const char*, int, int> cases[] = {
      {"none", ENOENT, 0},          {"gone/p", ENOENT, ENOENT}, {"sub", EISDIR, EISDIR},
      {"text/p", ENOTDIR, ENOTDIR}, {"pipe", 0, ENXIO},
  };
  for (const auto& [name, load_error, save_error] : cases) {
    SCOPED_TRACE(name);
    std::memset(events, 0x5A, sizeof events);
    EXPECT_EQ(load(name), load_error);
    EXPECT_EQ(empty(events[0]), load_error == 0);
    EXPECT_EQ(log(), load_error == 0 ? not_read : not_opened);
    EXPECT_EQ(save(name), save_error);
    EXPECT_EQ(log(), save_error == 0 ? "" : not_opened);
  }
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
