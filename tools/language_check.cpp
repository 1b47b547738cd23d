#include "tools/language_check.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>

#include "lang/lang_text.h"
#include "lang/text_ids.h"
#include "tools/language_file.h"
#include "tui/columns.h"
#include "tui/editors.h"
#include "tui/format.h"

namespace {

// --- The places of the texts on the screen ------------------------------------------------------

/// Where texts stand, by their numbers, and the columns that they have there. A screen has 80; the
/// last one stays free.
struct Place {
  int columns;
  const char* what;
  std::string_view texts;
};

/// From the narrowest place on: a text that stands in several has to fit the first.
constexpr Place places[] = {
    // Name and number of a recipient share a line with both values.
    {11, "a label of the list of recipients", "49 59"},
    // "weekly - Wednesday - 12:00" is the value.
    {12, "the label of a schedule's time", "51"},
    // Behind it stand a port and an address; name and model of the UPS are before it.
    {14, "a connection in the list of UPS devices", "131"},
    {18, "the column of the models in the list of UPS devices", "249"},
    // What stands behind the number of a free place must not look like an entry.
    {20, "a free place of a list", "335"},
    {20, "a word behind a label", "316-317 324 340"},
    {20, "a part of a schedule's time", "223-233 278"},
    {24, "a label before a long text of a schedule", "68 102"},
    // Serial lines aside, a connection has the rest of its line.
    {32, "a connection in the list of UPS devices", "242"},
    {39, "the column of the actions in the upcoming actions", "110 142 273-277"},
    // The letters of the actions stand below each other behind it.
    {40, "the name of an event in the list of jobs", "79-100"},
    // Up to 17 columns before it, a number of five digits behind it; of texts the end is cut off.
    {50, "a label with a value", "18-21 25-27 33-34 42 50 101 103-105 129-130 133 135-138 141 153"},
    {50, "a label with a value", "155 157 175 187-189 192-195 310 328 332"},
    // Titles, the labels that head the screen of an editor, and items that open something.
    {62, "a title or an item of a menu", "0 2 4 16-17 22 30 43 47 57-58 60 62 65-66 73 77 116-117"},
    {62, "a title or an item of a menu", "127 149-150 160-168 170-174 184 190 197 204 209 222"},
    {62, "a title or an item of a menu", "234-235 284 303-304 318 320 330 338-339 342"},
    {77, "a hint below a name", "336-337 343"},
    {79, "a message on a line of its own", "8 12 15 74 246 258 283 287 333"},
};

constexpr int frame_columns = 62;
constexpr int line_columns = 79;

/// Labels with an on or off word in brackets behind them, which nothing cuts: the two share what
/// the number of the item leaves of the line.
struct Switches {
  int number_columns;
  text::Id on;
  text::Id off;
  std::string_view texts;
};

constexpr Switches switches[] = {
    {10, text::yes, text::no, "23-24 35 37 41 78 144 146-148 186 191 196 205"},
    {11, text::yes, text::no, "106-113"},
    {16, text::yes, text::no, "38"},
    {10, text::flag_on, text::flag_off, "72 139"},
    {11, text::flag_on, text::flag_off, "152 154 156"},
};

/// The texts that jobs store as their message. No value of a file can hold a double quote.
constexpr std::string_view stored_texts = "79-100 341 384-391 400-421";

/// Whether `ranges`, "4 18-20", hold a number.
bool holds(std::string_view ranges, int number) {
  std::istringstream words{std::string(ranges)};
  for (std::string word; words >> word;) {
    const int last = std::stoi(word.substr(word.find('-') + 1));
    if (number >= std::stoi(word) && number <= last) return true;
  }
  return false;
}

// --- The texts ----------------------------------------------------------------------------------

void check_text(LanguageFile& file, int number, const std::string& text) {
  constexpr std::size_t longest = text_size - 1;
  if (text.size() > longest) {
    const std::string cut(cut_bytes(text, longest));
    file.note_text(number,
                   format("has %d bytes, the program shows %d at most: \"%s\"",
                          static_cast<int>(text.size()), static_cast<int>(longest), cut.c_str()));
  }
  if (!is_clean(text)) return file.note_text(number, "is not printable UTF-8");
  for (const Place& place : places) {
    if (!holds(place.texts, number) || columns(text) <= place.columns) continue;
    return file.note_text(
        number, format("takes %d columns; %s has %d", columns(text), place.what, place.columns));
  }
  for (const Switches& row : switches) {
    constexpr int between = 8;  // the colon, a gap of five columns, the brackets
    const int word = std::max(columns(file.text(row.on)), columns(file.text(row.off)));
    const int room = line_columns - row.number_columns - between - word;
    if (!holds(row.texts, number) || columns(text) <= room) continue;
    return file.note_text(number, format("takes %d columns; with text %d or %d behind it there "
                                         "are %d",
                                         columns(text), row.on, row.off, room));
  }
  if (holds(stored_texts, number) && text.find('"') != std::string::npos) {
    file.note_text(number, "holds a double quote, which the message of a job cannot");
  }
}

void check_missing(LanguageFile& file) {
  for (int number = 0; number <= text::last_used; ++number) {
    if (!file.texts.contains(number)) {
      file.note_text(number, "is missing");
    } else if (file.names.contains(number) && file.text(number).empty()) {
      file.note_text(number, "is empty, but the program shows it");
    }
  }
}

/// Two words that stand for on and off, or for the two answers to a question.
void check_words(LanguageFile& file, int on, int off) {
  const char32_t letter = upper_case(first_letter(file.text(on)));
  if (letter == 0 || letter != upper_case(first_letter(file.text(off)))) return;
  file.note_text(on, format("begins with the same letter as text %d", off));
}

/// The operator types the first letter of the word: it has to be on the keyboard.
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

/// What shares a line or is told apart by its beginning.
void check_together(LanguageFile& file) {
  check_words(file, text::yes, text::no);
  check_words(file, text::flag_on, text::flag_off);
  check_answer(file, text::yes);
  check_answer(file, text::no);

  const std::string hint = yesnostr(file.text(text::yes).c_str(), file.text(text::no).c_str());
  const int question = columns(file.text(text::save_question) + " " + hint + " : ");
  if (question >= line_columns) {
    file.note_text(text::save_question, format("takes %d columns with the answers %s; there are %d",
                                               question, hint.c_str(), line_columns - 1));
  }
  for (const text::Id id : {text::once_hint, text::time_hint}) {
    const int title = columns(file.text(text::enter_time) + " [" + file.text(id) + "]");
    if (title <= frame_columns) continue;
    file.note_text(id, format("takes %d columns behind text %d in one title; there are %d", title,
                              text::enter_time, frame_columns));
  }

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

/// Remarks on texts that nobody may have translated. Words that most languages share are not meant,
/// nor what has no letters.
void check_translated(LanguageFile& file, const std::vector<std::vector<std::string>>& shipped) {
  if (file.number == 0 || shipped.empty()) return;
  for (const auto& [number, entry] : file.texts) {
    if (number >= text_count) break;
    const auto at = static_cast<std::size_t>(number);
    const std::string& english = shipped[0][at];
    const bool has_letters = std::any_of(english.begin(), english.end(), [](unsigned char byte) {
      return byte >= 0x80 || std::isalpha(byte) != 0;
    });
    if (entry.text != english || !has_letters) continue;
    const auto alike = std::count_if(shipped.begin(), shipped.end(),
                                     [&](const auto& texts) { return texts[at] == english; });
    if (alike * 2 > std::ssize(shipped)) continue;
    file.note_text(number, "as in English, perhaps untranslated: \"" + english + "\"", true);
  }
}

}  // namespace

int check_language(const std::string& path, std::vector<Finding>& findings) {
  static const std::vector<std::vector<std::string>> shipped = load_shipped();
  LanguageFile file;
  const int error = file.read(path);
  if (error != 0) return error;
  if (file.has_section) {
    check_missing(file);
    for (const auto& [number, entry] : file.texts) check_text(file, number, entry.text);
    check_together(file);
    check_translated(file, shipped);
  }
  findings = std::move(file.findings);
  std::stable_sort(findings.begin(), findings.end(),
                   [](const Finding& a, const Finding& b) { return a.line < b.line; });
  return 0;
}
