#pragma once

#include <array>

/// The choice of language by its display name, the first line of its file.

constexpr int language_count = 32;
constexpr int language_name_size = 50;

/// The display names by number. A name is empty when its file does not exist.
using LanguageNames = std::array<char[language_name_size], language_count>;

/// Reads the display names of all language files beside the program.
void load_language_names(LanguageNames& names);

/// The list of languages, up to the first number without a file. Sets `Language` in `INI1`, or
/// leaves it as it is. The menus keep the texts that are loaded.
void menu_languages(const LanguageNames& names);
void print_languages(const LanguageNames& names, int selected);

/// Asks for the language at a prompt, before there are menus. Sets `Language` in `INI`, and loads
/// the texts of the language in `INI1`. Ends the program with status 5 when they cannot be loaded.
/// Accepts no answer when there is no language file.
void choice_language();
