#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "check/check.h"
#include "check/finding.h"
#include "command/escaped.h"
#include "config/group_profile.h"
#include "config/store.h"
#include "lang/lang_text.h"
#include "lang/language_choice.h"
#include "schedule/schedule_code.h"
#include "tests/check_properties.h"
#include "tests/folder.h"
#include "tests/plain_upcoming.h"
#include "tests/zone.h"

namespace {

/// Ends the run with a finding unless `holds`; `claim` says what should have held.
void require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "This should have held: %s\n", claim);
  std::abort();
}

/// Where the program believes to lie.
const Folder folder{Folder::Files{}};

/// Ends the run with a finding unless there is no account of one.
void require_none(const std::string& account) { require(account.empty(), account.c_str()); }

template <typename T>
bool is_zero(const T& object) {
  static const T zero = {};
  return std::memcmp(&object, &zero, sizeof object) == 0;
}

/// What no file can reach stays zero.
void require_zeros() {
  require(is_zero(INI.spare) && is_zero(INI.email_config.spare) && is_zero(INI.mess_config.spare) &&
              is_zero(INI.wap_config.spare) && is_zero(INI.group[0].spare),
          "spare bytes stay zero");
  for (const ScheduleEntry& entry : INI.schedule) {
    require(is_zero(entry.spare) && entry.last == 0, "the moment of firing is in no file");
  }
}

}  // namespace

/// The targets. Each is built as a program of its own, which `FUZZ_TARGET` names.
namespace fuzz {

/// The files of a configuration, separated by ASCII 28. A file without a separator before it is not
/// there, unless it is the first. What a save does not bring back has a finding.
void check(std::string_view input) {
  Folder::Files files;
  for (const char* name : {"kestrel.ini", "jobs.ini", "jobsSTS.ini", "group_00.ini", "sensor.ini",
                           "group_01.ini", "group_02.ini", "group_04.ini", "group_09.ini"}) {
    const std::size_t size = std::min(input.find('\x1c'), input.size());
    files[name] = input.substr(0, size);
    if (size == input.size()) break;
    input.remove_prefix(size + 1);
  }
  folder.hold(files);
  require_none(first_silent_line(folder));
  require_zeros();
}

/// The bytes of a record: what a save makes of it deserves no blame.
void saved(std::string_view input) {
  make_record(input);
  require_none(first_false_alarm(folder));
}

/// Any bytes as any file that is checked alone. The first byte chooses which.
void checkfile(std::string_view input) {
  constexpr const char* names[] = {"lang_00.ini",  "profile",    "kestrel.ini", "jobs.ini",
                                   "group_03.ini", "sensor.ini", "jobsSTS.ini"};
  const std::size_t choice = input.empty() ? 0 : static_cast<unsigned char>(input[0]) - '0';
  input.remove_prefix(std::min<std::size_t>(input.size(), 1));
  folder.write("file", input);
  const char* const name = names[choice % std::size(names)];
  require(check_file(folder.path("file"), name, "file") == 0, "a file that exists is checked");
  for (const Finding& finding : findings) {
    const std::string sentence = sentence_of(finding);
    require(sentence == escaped(sentence), "a finding is fit for a terminal");
    require(finding.line > 0, "a finding has a line");
  }
}

/// One language file for all programs of the family.
void language(std::string_view input) {
  static const int allocated = AllocText();
  require(allocated == 0, "there is memory for the texts");
  folder.use();
  folder.write("lang_00.ini", input);
  folder.write("lang1_00.ini", input);
  static LanguageNames names;
  load_language_names(names);
  const auto ends = [](const auto& text) { return strnlen(text, sizeof text) < sizeof text; };
  require(std::all_of(std::begin(names), std::end(names), ends), "names end");

  constexpr char earlier[] = "earlier";
  for (const int program : {merlin, osprey, harrier, skylark, wren}) {
    const auto probes = {LangText[0], LangText[499], LangText[1099]};
    for (char* probe : probes) std::memcpy(probe, earlier, sizeof earlier);
    const int result = LoadText(program, 0);
    require(result == 0 || result == 2, "a file that exists can be opened");
    for (const char* probe : probes) {
      require(result == 0 || std::strcmp(probe, earlier) == 0, "without the section all stays");
    }
    for (const char* text : LangText) require(strnlen(text, text_size) < text_size, "texts end");
    require(std::all_of(std::begin(LM), std::end(LM), ends), "texts of Merlin end");
    require(std::all_of(std::begin(sys_mess), std::end(sys_mess), ends), "messages end");
    require(std::strlen(LangFileVersion) <= 20, "a version has at most 20 characters");
  }
}

/// A group profile. Loading and saving, once it has been done, changes nothing any more.
void profile(std::string_view input) {
  static const std::string path = folder.path("profile");
  static GroupEvent events[event_count];
  folder.write("profile", input);
  std::string saved;
  for (const bool again : {false, true}) {
    require(LoadGroupProfile(path.c_str(), events) == 0, "a profile that is there loads");
    require(SaveGroupProfile(path.c_str(), events) == 0, "a profile can be saved");
    require(!again || folder.read("profile") == saved, "it is saved again, byte for byte");
    saved = folder.read("profile");
  }
}

/// Two bytes choose the time zone, and the moment of a period in which entry 0 is due. The codes of
/// the schedules follow.
void schedule(std::string_view input) {
  constexpr std::int64_t period = 3 * 3600;
  constexpr const char* zones[] = {"UTC", "Europe/Prague", "America/New_York",
                                   "Australia/Lord_Howe"};
  std::uint8_t head[2] = {};
  input.copy(reinterpret_cast<char*>(head), sizeof head);
  const Zone zone(zones[head[0] % std::size(zones)]);
  input.remove_prefix(std::min(input.size(), sizeof head));
  INI = {};
  for (ScheduleEntry& entry : INI.schedule) {
    input.remove_prefix(input.copy(entry.code.bytes, sizeof entry.code));
  }
  DecodeSchedules();

  static Record decoded;
  decoded = INI;
  EncodeSchedules();
  for (int i = 0; i < schedule_count; ++i) {
    const ScheduleEntry& entry = INI.schedule[i];
    require(entry.code.view().size() == (entry.action == 0 ? 0 : 18), "codes are whole, or none");
    if (entry.action == 0) decoded.schedule[i] = {};
    decoded.schedule[i].code = entry.code;
  }
  DecodeSchedules();
  require(std::memcmp(&INI, &decoded, sizeof INI) == 0, "a code stands for the same entry again");

  const std::int64_t lead = head[1] * period / 256;
  const std::int64_t start = std::max<std::int64_t>(0, INI.schedule[0].time - lead);
  require(upcoming_lines(start, start + period, INI) ==
              plain_upcoming_lines(start, start + period, INI),
          "both lists of upcoming matches agree");
}

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  fuzz::FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
