#include "config/group_profile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
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

/// The events of a group, and a folder for a profile and the debug log.
class Profile : public testing::Test {
 protected:
  Profile() {
    folder.use();
    bDebugLog = 1;
    std::memset(events, 0x5A, sizeof events);
  }
  ~Profile() override { bDebugLog = 0; }

  int load(const std::string& name) { return LoadGroupProfile(folder.path(name).c_str(), events); }
  int save(const std::string& name) { return SaveGroupProfile(folder.path(name).c_str(), events); }

  /// What has been logged since the last call.
  std::string log() {
    std::string text = read_file(folder.path("debugs.log"));
    folder.remove("debugs.log");
    return text;
  }

  const Folder folder{Folder::Files{}};
  GroupEvent events[event_count];
};

/// A record whose bytes are all different from those beside them, with text behind the terminators.
std::string sample_record(int seed = 0) {
  std::string record;
  for (std::size_t i = 0; i < record_size; ++i) {
    record += static_cast<char>(static_cast<std::size_t>(seed) + 7 * i + i / 256 + 1);
  }
  record[40] = record[340] = '\0';
  return record;
}

/// What a field of an event holds, as it lies in a file.
std::string bytes_of(const Field& field, GroupEvent& event) {
  if (field.kind == Kind::text) return {bytes_at(field, &event), field.width};
  const unsigned number = number_at(field, &event);
  return {static_cast<char>(number & 0xFFU), static_cast<char>(number >> 8)};
}

TEST_F(Profile, HoldsTheKeysOfTheGroupFileInTheirOrderNumbersLowByteFirst) {
  folder.write("p", sample_record());
  EXPECT_EQ(load("p"), 0);
  GroupEvent swapped = events[0];
  swap_event_data(swapped);
  std::string record;
  for (const Field& field : families_of(group_file)[2].fields) {
    std::string bytes = bytes_of(field, events[0]);
    record += bytes;
    if (field.kind != Kind::text) std::reverse(bytes.begin(), bytes.end());
    EXPECT_EQ(bytes_of(field, swapped), bytes) << field.key;
  }
  EXPECT_EQ(record, sample_record());
}

TEST_F(Profile, LoadsAndSavesTheWholeRecordsThereAre) {
  std::string bytes;
  for (int i = 0; i < 65; ++i) bytes += sample_record(i);
  for (const std::size_t size : {0U, 449U, 450U, 451U, 28799U, 28800U, 29250U}) {
    SCOPED_TRACE(size);
    folder.write("p", bytes.substr(0, size));
    std::memset(events, 0x5A, sizeof events);
    EXPECT_EQ(load("p"), 0);
    EXPECT_EQ(log(), size < sizeof events ? not_read : no_room);
    const std::string whole = bytes.substr(0, std::min(size - size % record_size, sizeof events));
    const std::string loaded(reinterpret_cast<const char*>(events), sizeof events);
    EXPECT_EQ(save("saved"), 0);
    EXPECT_EQ(folder.read("saved"), whole);
    EXPECT_EQ(std::memcmp(events, loaded.data(), sizeof events), 0);
  }
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
    EXPECT_EQ(events[0].Type[0] == 0, load_error == 0);
    EXPECT_EQ(log(), load_error == 0 ? not_read : not_opened);
    EXPECT_EQ(save(name), save_error);
    EXPECT_EQ(log(), save_error == 0 ? "" : not_opened);
  }
}

}  // namespace
