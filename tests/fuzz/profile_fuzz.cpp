#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "config/group_profile.h"
#include "tests/fuzz/scratch.h"

/// A group profile, whatever is in it: its whole records become events, the rest of the events are
/// empty, and once it has been saved, loading and saving change nothing any more.

namespace {

GroupEvent events[event_count];

/// The file that loading and saving leave.
std::string load_and_save(const Scratch& folder) {
  const std::string path = folder.path("profile");
  require(LoadGroupProfile(path.c_str(), events) == 0, "the profile can be opened");
  require(SaveGroupProfile(path.c_str(), events) == 0, "the profile can be saved");
  return folder.files().at("profile");
}

/// Whether the events hold the whole records of `input` and nothing else, on a machine with the
/// byte order of the file.
bool hold_records(std::string_view input) {
  const std::size_t records = std::min<std::size_t>(event_count, input.size() / sizeof(GroupEvent));
  std::string expected(input.substr(0, records * sizeof(GroupEvent)));
  expected.resize(sizeof events);
  if (test_big_endian() != 0) std::for_each(events, events + event_count, swap_event_data);
  return std::memcmp(events, expected.data(), sizeof events) == 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Scratch folder;
  folder.write("profile", text_of(data, size));
  std::memset(events, 0xEE, sizeof events);
  require(LoadGroupProfile(folder.path("profile").c_str(), events) == 0, "the profile loads");
  require(hold_records(text_of(data, size)), "the events are the records of the file");

  const std::string saved = load_and_save(folder);
  require(load_and_save(folder) == saved, "what was saved is saved again, byte for byte");
  return 0;
}
