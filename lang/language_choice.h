#pragma once

#include <array>

/// The choice of language by its display name, the first line of its file.

constexpr int language_count = 32;
constexpr int language_name_size = 50;

/// The display names by number; empty where the file does not exist.
using LanguageNames = std::array<char[language_name_size], language_count>;

/// Reads the display names of all language files beside the program.
void load_language_names(LanguageNames& names);

/// The list of languages, up to the first number without a file. Sets `Language` in `INI1`, or
/// leaves it as it is; the menus keep the texts that are loaded.
void menu_languages(const LanguageNames& names);
void print_languages(const LanguageNames& names, int selected);

/// Asks for the language at a prompt, before there are menus: sets `Language` in `INI` and loads
/// the texts. When they cannot be loaded, ends the program with status 5. There must be at least
/// one language file, or no answer is accepted.
void choice_language();
