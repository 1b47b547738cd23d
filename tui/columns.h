#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Characters and columns of UTF-8 text (RFC 3629). The screen counts columns of a terminal.
/// The record and the files count bytes. A byte that is not part of valid UTF-8 is a character of
/// its own and takes one column.

/// Returns the bytes of the first character of `text`, or nothing for an empty text.
std::string_view first_character(std::string_view text);

/// Returns the first `count` characters of `text`, or the whole text if it has fewer.
std::string_view first_characters(std::string_view text, int count);

/// Returns how many columns `text` takes: two for wide East Asian characters (Unicode Standard
/// Annex 11: W and F), none for combining marks, one for any other character.
int columns(std::string_view text);

/// Returns `text` without control characters (C0, DEL and C1 of ECMA-48, the latter also as single
/// bytes), and without the characters that turn the direction of a line (U+202A to U+202E and
/// U+2066 to U+2069). What comes from a file may contain some, and they would disturb the screen.
/// Other bytes that are no UTF-8 stay, for terminals with eight-bit letters.
std::string printable(std::string_view text);

/// Returns the longest beginning of `text` that takes at most `width` columns.
std::string_view cut_columns(std::string_view text, int width);

/// Returns `text` when it takes at most `width` columns, except for blanks at its end, which it
/// then loses. Otherwise returns a beginning of it with ">" in column `width`, and a blank before
/// the mark in place of half a wide character. When the line `goes_on`, this also cuts a text that
/// leaves no column free: what follows it would be lost without a mark.
std::string cut_marked(std::string_view text, int width, bool goes_on = false);

/// Returns the longest beginning of `text` that has at most `size` bytes and splits no character.
std::string_view cut_bytes(std::string_view text, std::size_t size);

/// Returns the code point of the first character of `text`, or 0 for an empty text. A byte that is
/// not valid UTF-8 stands for itself.
char32_t first_letter(std::string_view text);

/// Return a letter in the other case, in every locale alike. They know the basic letters of the
/// Latin, Greek and Cyrillic scripts: the answer words begin with one of these.
char32_t lower_case(char32_t letter);
char32_t upper_case(char32_t letter);

/// Returns a code point as UTF-8.
std::string to_utf8(char32_t letter);
