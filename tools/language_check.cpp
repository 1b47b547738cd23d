#include "tools/language_check.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <utility>

#include "lang/lang_text.h"
#include "lang/text_ids.h"
#include "lang/text_places.h"
#include "tools/language_file.h"
#include "tui/columns.h"
#include "tui/editors.h"
#include "tui/format.h"

namespace {

// --- One text -----------------------------------------------------------------------------------

void check_switch(LanguageFile& file, const text::Row& row, text::Id on, text::Id off) {
  const int own = columns(file.text(row.id));
  const int room = row.place->columns - std::max(columns(file.text(on)), columns(file.text(off)));
  if (own <= room) return;
  file.note_text(row.id, format("takes %d columns; with text %d or %d behind it there are %d", own,
                                on, off, room));
}

void check_question(LanguageFile& file, const text::Row& row) {
  const std::string answers = yesnostr(file.text(text::yes).c_str(), file.text(text::no).c_str());
  const int line = columns(file.text(row.id) + " " + answers + " : ");
  if (line <= row.place->columns) return;
  file.note_text(row.id, format("takes %d columns with the answers %s; there are %d", line,
                                answers.c_str(), row.place->columns));
}

void check_title_end(LanguageFile& file, const text::Row& row) {
  const int title = columns(file.text(text::enter_time) + " [" + file.text(row.id) + "]");
  if (title <= row.place->columns) return;
  file.note_text(row.id, format("takes %d columns behind text %d in one title; there are %d", title,
                                text::enter_time, row.place->columns));
}

void check_alone(LanguageFile& file, const text::Row& row) {
  const int own = columns(file.text(row.id));
  if (row.place->columns == 0 || own <= row.place->columns) return;
  file.note_text(row.id,
                 format("takes %d columns; %s has %d", own, row.place->what, row.place->columns));
}

/// Whether a text fits its place, with what stands beside it there.
void check_columns(LanguageFile& file, const text::Row& row) {
  switch (row.place->beside) {
    case text::Beside::nothing:
      return check_alone(file, row);
    case text::Beside::yes_or_no:
      return check_switch(file, row, text::yes, text::no);
    case text::Beside::on_or_off:
      return check_switch(file, row, text::flag_on, text::flag_off);
    case text::Beside::enter_time:
      return check_title_end(file, row);
    case text::Beside::answers:
      return check_question(file, row);
  }
}

void check_text(LanguageFile& file, int number, const std::string& text) {
  constexpr std::size_t longest = text_size - 1;
  if (text.size() > longest) {
    const std::string cut(cut_bytes(text, longest));
    file.note_text(number,
                   format("has %d bytes, the program shows %d at most: \"%s\"",
                          static_cast<int>(text.size()), static_cast<int>(longest), cut.c_str()));
  }
  if (!is_clean(text)) return file.note_text(number, "is not printable UTF-8");
  const text::Row* const row = text::find_row(number);
  if (row == nullptr) return;
  check_columns(file, *row);
  if (row->place->stored && text.find('"') != std::string::npos) {
    file.note_text(number, "holds a double quote, which the message of a job cannot");
  }
}

// --- Several texts ------------------------------------------------------------------------------

void check_missing(LanguageFile& file) {
  for (int number = 0; number <= text::last_used; ++number) {
    if (!file.texts.contains(number)) {
      file.note_text(number, "is missing");
    } else if (text::find_row(number) != nullptr && file.text(number).empty()) {
      file.note_text(number, "is empty, but the program shows it");
    }
  }
}

/// Two words for on and off, or for the two answers to a question. Their first letters must differ.
void check_words(LanguageFile& file, int on, int off) {
  const char32_t letter = upper_case(first_letter(file.text(on)));
  if (letter == 0 || letter != upper_case(first_letter(file.text(off)))) return;
  file.note_text(on, format("begins with the same letter as text %d", off));
}

/// The operator types the first letter of the word, so the letter must be on the keyboard.
void check_answer(LanguageFile& file, int word) {
  const std::string text = file.text(word);
  const std::string letter(first_character(text));
  const char32_t code = first_letter(text);
  if (letter == " " || columns(letter) == 2) {
    file.note_text(word, "begins with \"" + letter + "\", which no single key types");
  } else if (letter.size() > 1 && lower_case(code) == upper_case(code)) {
    file.note_text(word,
                   "the program does not know the other case of \"" + letter +
                       "\": the operator has to type it as it stands here",
                   true);
  }
}

/// The words and names that an operator tells apart by their beginning.
void check_beginnings(LanguageFile& file) {
  check_words(file, text::yes, text::no);
  check_words(file, text::flag_on, text::flag_off);
  check_answer(file, text::yes);
  check_answer(file, text::no);

  std::map<std::string, int> days;
  for (int day = text::weekday_first; day < text::weekday_first + 7; ++day) {
    const std::string name = file.text(day);
    const std::string shown(first_characters(name, 3));
    const auto [other, fresh] = days.emplace(shown, day);
    if (fresh || shown.empty()) continue;
    file.note_text(day, format("begins with the same three characters as text %d, and the list of "
                               "schedules shows no more",
                               other->second));
  }
}

/// Remarks on texts that may be left in English. Skips words that most languages in the folder
/// share, and texts without letters.
void check_translated(LanguageFile& file) {
  const std::vector<std::vector<std::string>> languages = load_languages();
  if (file.number == 0 || languages.empty()) return;
  for (const auto& [number, entry] : file.texts) {
    if (number >= text_count) break;
    const auto at = static_cast<std::size_t>(number);
    const std::string& english = languages[0][at];
    const bool has_letters = std::any_of(english.begin(), english.end(), [](unsigned char byte) {
      return byte >= 0x80 || std::isalpha(byte) != 0;
    });
    if (entry.text != english || !has_letters) continue;
    const auto alike = std::count_if(languages.begin(), languages.end(),
                                     [&](const auto& texts) { return texts[at] == english; });
    if (alike * 2 > std::ssize(languages)) continue;
    file.note_text(number, "as in English, perhaps untranslated: \"" + english + "\"", true);
  }
}

}  // namespace

int check_language(const std::string& path, std::vector<Finding>& findings) {
  LanguageFile file;
  const int error = file.read(path);
  if (error != 0) return error;
  if (file.has_section) {
    check_missing(file);
    for (const auto& [number, entry] : file.texts) check_text(file, number, entry.text);
    check_beginnings(file);
    check_translated(file);
  }
  findings = std::move(file.findings);
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
  return 0;
}
