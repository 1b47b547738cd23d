#include "tui/columns.h"

#include <algorithm>
#include <iterator>

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Unicode 15, EastAsianWidth.txt: W and F. A range also covers the unassigned code points in it.
constexpr Range wide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x23E9, 0x23EC},
    {0x25FD, 0x25FE},   {0x2614, 0x2615},   {0x2E80, 0x303E},   {0x3041, 0x33FF},
    {0x3400, 0x4DBF},   {0x4E00, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE10, 0xFE19},   {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},
    {0xFFE0, 0xFFE6},   {0x16FE0, 0x18CFF}, {0x1AFF0, 0x1B2FF}, {0x1F300, 0x1F64F},
    {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

// Unicode 15, UnicodeData.txt: Mn, Me and Cf, as far as texts are likely to use them.
constexpr Range combining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},
    {0x200B, 0x200F}, {0x20D0, 0x20F0}, {0x302A, 0x302D}, {0x3099, 0x309A}, {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
};

template <std::size_t N>
bool contains(const Range (&ranges)[N], char32_t letter) {
  const Range* range = std::lower_bound(
      std::begin(ranges), std::end(ranges), letter,
      [](const Range& candidate, char32_t value) { return candidate.last < value; });
  return range != std::end(ranges) && letter >= range->first;
}

struct Character {
  char32_t letter;
  std::size_t bytes;
};

/// Decodes the first character. `text` is not empty.
Character decode(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const Character single = {lead, 1};
  const std::size_t bytes = lead < 0xC2   ? 1
                            : lead < 0xE0 ? 2
                            : lead < 0xF0 ? 3
                            : lead < 0xF5 ? 4
                                          : 1;
  if (bytes == 1 || text.size() < bytes) return single;
  char32_t letter = lead & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0U) != 0x80) return single;
    letter = letter << 6U | (next & 0x3FU);
  }
  const bool overlong = (bytes == 3 && letter < 0x800) || (bytes == 4 && letter < 0x10000);
  const bool surrogate = letter >= 0xD800 && letter <= 0xDFFF;
  return overlong || surrogate || letter > 0x10FFFF ? single : Character{letter, bytes};
}

int width_of(Character character) {
  if (character.bytes == 1) return 1;
  if (contains(combining, character.letter)) return 0;
  return contains(wide, character.letter) ? 2 : 1;
}

bool within(char32_t letter, char32_t first, char32_t last) {
  return letter >= first && letter <= last;
}

}  // namespace

std::string_view first_character(std::string_view text) {
  return text.empty() ? text : text.substr(0, decode(text).bytes);
}

std::string_view first_characters(std::string_view text, int count) {
  std::size_t used = 0;
  for (int i = 0; i < count; ++i) used += first_character(text.substr(used)).size();
  return text.substr(0, used);
}

int columns(std::string_view text) {
  int width = 0;
  while (!text.empty()) {
    const Character character = decode(text);
    width += width_of(character);
    text.remove_prefix(character.bytes);
  }
  return width;
}

std::string printable(std::string_view text) {
  std::string clean;
  while (!text.empty()) {
    const Character character = decode(text);
    const char32_t letter = character.letter;
    const bool control = letter < 0x20 || within(letter, 0x7F, 0x9F);
    const bool turns_the_line = within(letter, 0x202A, 0x202E) || within(letter, 0x2066, 0x2069);
    if (!control && !turns_the_line) clean += text.substr(0, character.bytes);
    text.remove_prefix(character.bytes);
  }
  return clean;
}

std::string_view cut_columns(std::string_view text, int width) {
  std::size_t used = 0;
  while (used < text.size()) {
    const Character character = decode(text.substr(used));
    width -= width_of(character);
    if (width < 0) break;
    used += character.bytes;
  }
  return text.substr(0, used);
}

std::string cut_marked(std::string_view text, int width, bool goes_on) {
  const std::string_view shown = cut_columns(text, width);
  const bool whole = text.find_first_not_of(' ', shown.size()) == std::string_view::npos;
  if (whole && !(goes_on && columns(shown) >= width)) return std::string(shown);
  if (width <= 0) return "";
  std::string cut(cut_columns(text, width - 1));
  if (columns(cut) < width - 1) cut += ' ';
  return cut + '>';
}

std::string_view cut_bytes(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  std::size_t used = 0;
  for (;;) {
    const std::size_t bytes = decode(text.substr(used)).bytes;
    if (used + bytes > size) return text.substr(0, used);
    used += bytes;
  }
}

char32_t first_letter(std::string_view text) { return text.empty() ? 0 : decode(text).letter; }

char32_t lower_case(char32_t letter) {
  if (within(letter, 'A', 'Z') || (within(letter, 0xC0, 0xDE) && letter != 0xD7) ||
      within(letter, 0x391, 0x3A9) || within(letter, 0x410, 0x42F)) {
    return letter + 0x20;
  }
  return within(letter, 0x400, 0x40F) ? letter + 0x50 : letter;
}

char32_t upper_case(char32_t letter) {
  if (within(letter, 'a', 'z') || (within(letter, 0xE0, 0xFE) && letter != 0xF7) ||
      within(letter, 0x3B1, 0x3C9)) {
    // A final sigma has no capital of its own.
    return letter == 0x3C2 ? 0x3A3 : letter - 0x20;
  }
  if (within(letter, 0x430, 0x44F)) return letter - 0x20;
  return within(letter, 0x450, 0x45F) ? letter - 0x50 : letter;
}

std::string to_utf8(char32_t letter) {
  const auto last = [&](unsigned shift) {
    return static_cast<char>(0x80U | (letter >> shift & 0x3FU));
  };
  if (letter < 0x80) return {static_cast<char>(letter)};
  if (letter < 0x800) return {static_cast<char>(0xC0U | letter >> 6U), last(0)};
  if (letter < 0x10000) return {static_cast<char>(0xE0U | letter >> 12U), last(6), last(0)};
  return {static_cast<char>(0xF0U | letter >> 18U), last(12), last(6), last(0)};
}
