#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

#include "schedule/encoding.h"
#include "tests/fuzz/scratch.h"
#include "tests/plain_upcoming.h"

/// Schedule codes, whatever is in them: decoding makes some entry of them, encoding it again gives
/// a code that stands for the same entry, and the list of upcoming matches is the plain one.

namespace {

constexpr std::size_t code_size = sizeof(ScheduleEntry::code);
constexpr std::int64_t period = 3 * 3600;
constexpr const char* zones[] = {"UTC", "Europe/Prague", "America/New_York", "Australia/Lord_Howe"};

/// The first byte chooses the time zone, the second the moment of the period in which entry 0 is
/// due; the others are the codes, one behind the other.
struct Input {
  explicit Input(std::string_view bytes) {
    std::uint8_t head[2] = {};
    bytes.copy(reinterpret_cast<char*>(head), sizeof head);
    zone = zones[head[0] % std::size(zones)];
    lead = head[1] * period / 256;
    bytes.remove_prefix(std::min(bytes.size(), sizeof head));
    INI = {};
    for (ScheduleEntry& entry : INI.schedule) {
      bytes.copy(entry.code.bytes, code_size);
      bytes.remove_prefix(std::min(bytes.size(), code_size));
    }
  }

  const char* zone;
  std::int64_t lead;
};

void check_codes() {
  static Record decoded;
  decoded = INI;
  EncodeSchedules();
  for (int i = 0; i < schedule_count; ++i) {
    const ScheduleEntry& entry = INI.schedule[i];
    require(entry.action == 0 ? entry.code.empty() : entry.code.view().size() == 18,
            "an entry with an action has a whole code, another one none");
    if (entry.action == 0) decoded.schedule[i] = {};
    decoded.schedule[i].code = entry.code;
  }
  DecodeSchedules();
  require(std::memcmp(&INI, &decoded, sizeof INI) == 0, "a code stands for the same entry again");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(text_of(data, size));
  setenv("TZ", input.zone, 1);
  tzset();
  DecodeSchedules();
  check_codes();

  const std::int64_t start = std::max<std::int64_t>(0, INI.schedule[0].time - input.lead);
  require(upcoming_lines(start, start + period, INI) ==
              plain_upcoming_lines(start, start + period, INI),
          "both lists of upcoming matches agree");
  return 0;
}
