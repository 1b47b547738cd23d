#include "merge/renewal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <vector>

#include "command/command.h"
#include "config/replace_file.h"
#include "config/signals_held.h"
#include "lang/lang_text.h"
#include "lang/text_ids.h"
#include "merge/language_parts.h"
#include "tui/columns.h"

namespace {

bool is_ascii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char byte) { return (byte & 0x80) == 0; });
}

bool is_utf8(std::string_view text) {
  while (!text.empty()) {
    const std::string_view character = first_character(text);
    if (character.size() == 1 && !is_ascii(character)) return false;
    text.remove_prefix(character.size());
  }
  return true;
}

int fail(const std::string& path, const std::string& why) {
  complain(path + ": " + why);
  return EIO;
}

int fail(const std::string& path, int error) {
  return fail(path, error == EINVAL ? "is no regular file" : std::strerror(error));
}

/// The texts of a file as the menus show them.
std::vector<std::string> texts_of(const std::string& path) {
  if (AllocText() != 0) throw std::bad_alloc();
  LoadTextFile(harrier, path.c_str());
  std::vector<std::string> texts(LangText, LangText + text::last_used + 1);
  FreeText();
  return texts;
}

int count_changes(const std::string& before, const std::string& after) {
  const std::vector<std::string> old = texts_of(before);
  const std::vector<std::string> fresh = texts_of(after);
  int changes = 0;
  for (std::size_t i = 0; i < old.size(); ++i) changes += old[i] == fresh[i] ? 0 : 1;
  return changes;
}

/// Why our section cannot be put into a file, or nothing.
std::string obstacle(const LanguageParts& file, std::string_view section) {
  if (file.has_nul) return "it has NUL bytes, so it is no text in UTF-8";
  if (file.sections == 0) return "it has no section of a program that reads such files";
  if (file.open_header) return "its last line begins with \"[\" and has no line end";
  if (!is_ascii(section) && !is_utf8(file.before + file.after)) {
    return "it is not in UTF-8, and Harrier's texts are";
  }
  return "";
}

}  // namespace

int plan(const std::string& source, Renewal& renewal) {
  LanguageParts ours;
  LanguageParts file;
  int error = read_language_parts(source, ours);
  if (error != 0) return fail(source, error);
  if (ours.section.empty() || ours.has_nul) return fail(source, "has no section [Harrier]");
  error = read_language_parts(renewal.path, file);
  if (error == ENOENT) {
    renewal.change = Change::copy;
    renewal.contents = ours.before + ours.section + ours.after;
    return 0;
  }
  if (error != 0) return fail(renewal.path, error);
  renewal.contents = with_section(file, ours.section);
  renewal.reason = obstacle(file, ours.section);
  if (!file.section.empty() && renewal.contents == file.before + file.section + file.after) {
    renewal.change = Change::none;
  } else if (!renewal.reason.empty()) {
    renewal.change = Change::leave;
  } else if (file.section.empty()) {
    renewal.change = Change::add;
  } else {
    renewal.change = Change::renew;
    renewal.texts = count_changes(renewal.path, source);
  }
  return 0;
}

int carry_out(const Renewal& renewal) {
  const SignalsHeld held;
  FileUnit unit;
  int owner = 0;
  int error = unit.stage(renewal.path, renewal.contents, {.model = renewal.model});
  if (error == 0) error = unit.swap(owner);
  for (const std::string& sentence : unit.kept()) complain(sentence);
  return error == 0 ? 0 : fail(renewal.path, error);
}
