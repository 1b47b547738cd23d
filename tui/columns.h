#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Characters and columns of UTF-8 text (RFC 3629). Texts are counted in columns of a terminal
/// where they are shown, and in bytes where they are stored. A byte that is not part of valid UTF-8
/// is a character of its own and takes one column.

/// The bytes of the first character of `text`, none for an empty text.
std::string_view first_character(std::string_view text);

/// The first `count` characters of `text`, or all that there are.
std::string_view first_characters(std::string_view text, int count);

/// The columns that `text` takes: two for wide East Asian characters (Unicode Standard Annex 11: W
/// and F), none for combining marks, one for any other character.
int columns(std::string_view text);

/// `text` without control characters (C0, DEL and C1 of ECMA-48), which a value from a file may
/// hold and which would disturb the screen.
std::string printable(std::string_view text);

/// The longest beginning of `text` that takes at most `width` columns.
std::string_view cut_columns(std::string_view text, int width);

/// The longest beginning of `text` that has at most `size` bytes and splits no character.
std::string_view cut_bytes(std::string_view text, std::size_t size);

/// The code point of the first character of `text`, 0 for an empty text; a byte that is not valid
/// UTF-8 stands for itself.
char32_t first_letter(std::string_view text);

/// A letter in the other case. Knows the basic letters of the Latin, Greek and Cyrillic scripts,
/// with which the answer words begin, independent of the locale.
char32_t lower_case(char32_t letter);
char32_t upper_case(char32_t letter);

/// A code point as UTF-8. Below 128 that is one byte.
std::string to_utf8(char32_t letter);
