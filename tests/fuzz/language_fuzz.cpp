#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "lang/lang_text.h"
#include "lang/language_choice.h"
#include "tests/fuzz/scratch.h"

/// One language file for all programs of the family, whatever is in it: every text and name stays
/// within its room, and a file without the section changes nothing.

namespace {

constexpr char earlier[] = "earlier";
constexpr int probes[] = {0, 499, 1099};  // texts that tell whether a load has changed anything

template <std::size_t Count, std::size_t Size>
bool all_terminated(const char (&texts)[Count][Size]) {
  return std::all_of(texts, texts + Count,
                     [](const char(&text)[Size]) { return strnlen(text, Size) < Size; });
}

void check_texts() {
  for (const char* text : LangText) require(strnlen(text, text_size) < text_size, "texts end");
  require(all_terminated(LM) && all_terminated(sys_mess), "texts of the other programs end");
  require(std::strlen(LangFileVersion) <= 20, "a version has at most 20 characters");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Scratch folder;
  static const int allocated = AllocText();
  require(allocated == 0, "there is memory for the texts");
  folder.write("lang_00.ini", text_of(data, size));
  folder.write("lang1_00.ini", text_of(data, size));

  static LanguageNames names;
  load_language_names(names);
  for (const auto& name : names) require(strnlen(name, sizeof name) < sizeof name, "names end");

  for (const int program : {merlin, osprey, harrier, skylark, wren}) {
    for (const int probe : probes) std::memcpy(LangText[probe], earlier, sizeof earlier);
    const int result = LoadText(program, 0);
    require(result == 0 || result == 2, "a file that exists can be opened");
    for (const int probe : probes) {
      require(result == 0 || std::strcmp(LangText[probe], earlier) == 0,
              "a file without the section changes nothing");
    }
    check_texts();
  }
  return 0;
}
