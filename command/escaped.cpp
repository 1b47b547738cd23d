#include "command/escaped.h"

#include <algorithm>
#include <iterator>

#include "tui/columns.h"
#include "tui/format.h"

namespace {

/// Characters that look like a blank or like nothing. They come with texts from word processors,
/// mail and web pages.
bool is_hidden(std::string_view character) {
  constexpr std::string_view hidden[] = {
      "\u00A0", "\u00AD", "\u200B", "\u200C", "\u200D",
      "\u200E", "\u200F", "\u202F", "\u2060", "\uFEFF",
  };
  return std::find(std::begin(hidden), std::end(hidden), character) != std::end(hidden);
}

}  // namespace

std::string escaped(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::string_view character = first_character(text);
    text.remove_prefix(character.size());
    const bool no_utf8 = character.size() == 1 && (character[0] & 0x80) != 0;
    if (!no_utf8 && !is_hidden(character) && printable(character) == character) {
      shown += character;
      continue;
    }
    for (const char byte : character) {
      shown += format("\\x%02x", static_cast<unsigned char>(byte));
    }
  }
  return shown;
}
