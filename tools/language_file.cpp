#include "tools/language_file.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include "lang/lang_text.h"
#include "lang/language_choice.h"
#include "lang/text_ids.h"
#include "lang/text_places.h"
#include "tui/columns.h"
#include "tui/diag.h"
#include "tui/format.h"

namespace {

std::vector<std::string> read_texts;

void keep_text(const ReadText& text) {
  if (text.stored) read_texts.emplace_back(LangText[text.number]);
}

/// Loads a language from `ProgramDir` as the program does, up to the text where the program stops
/// reading. Returns 0, ENOMEM, or what `LoadText` returned.
int load_texts(int language, std::vector<std::string>& texts) {
  if (AllocText() != 0) return ENOMEM;
  read_texts.clear();
  text_listener = keep_text;
  const int result = LoadText(harrier, static_cast<signed char>(language));
  text_listener = nullptr;
  texts = read_texts;
  FreeText();
  return result;
}

bool set_program_dir(const std::string& folder) {
  if (folder.size() >= program_dir_size) return false;
  ProgramDir[folder.copy(ProgramDir, program_dir_size)] = '\0';
  return true;
}

/// The lines of a file without their line ends.
std::vector<std::string> split_lines(const std::string& bytes) {
  std::vector<std::string> lines;
  std::istringstream stream(bytes);
  for (std::string line; std::getline(stream, line);) {
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(line);
  }
  if (lines.empty()) lines.emplace_back();
  return lines;
}

void check_name(LanguageFile& file, const std::string& folder) {
  for (int before = 0; before < file.number; ++before) {
    const std::string name = format("lang_%02d.ini", before);
    if (std::filesystem::exists(folder + name)) continue;
    file.note(1, name + " is not there: the list of languages ends before this file");
  }
  LanguageNames names;
  load_language_names(names);
  const std::string listed = names[static_cast<std::size_t>(file.number)];
  const std::string& name = file.lines[0];
  if (name.empty() || name[0] == '[') {
    file.note(1, "the first line must be the name of the language");
  } else if (name.starts_with("\xEF\xBB\xBF")) {
    file.note(1, "the file begins with a byte order mark: save it as UTF-8 without one");
  } else if (!is_clean(name)) {
    file.note(1, "the name of the language is not printable UTF-8");
  } else if (name != listed) {
    file.note(1, format("the name of the language has %d bytes: the list shows \"%s\"",
                        static_cast<int>(name.size()), listed.c_str()));
  }
}

/// Reads the texts from line `at` on, and notes each line that the program reads differently or not
/// at all. `loaded` holds the texts that the program read.
void read_lines(LanguageFile& file, std::size_t at, const std::vector<std::string>& loaded) {
  static const std::regex key("String([0-9]{3,4})=");
  const std::size_t stop = at + loaded.size();
  int next = 0;
  for (; at < file.lines.size() && !file.lines[at].starts_with('['); ++at) {
    const int line = static_cast<int>(at) + 1;
    std::smatch found;
    // After the last text anything may follow.
    const bool is_text =
        std::regex_search(file.lines[at], found, key, std::regex_constants::match_continuous) &&
        format("%03d", std::stoi(found[1])) == found[1];
    if (!is_text && next > text::last_used) continue;
    const int number = is_text ? std::stoi(found[1]) : next;
    std::string fault;
    if (!is_text) {
      fault = format("here must be String%03d=\"...\"", next);
    } else if (number < next || (number > next && at == stop)) {
      fault = format("text %d: stands where text %d must be", number, next);
    }
    if (at == stop && next <= text::last_used) {
      fault += std::string(fault.empty() ? "" : "; ") + "the program stops reading here";
    }
    if (!fault.empty()) file.note(line, fault);
    if (!is_text) continue;

    std::string text = found.suffix();
    const bool quoted = text.size() >= 2 && text[0] == '"' && text.ends_with('"');
    if (quoted) {
      text = text.substr(1, text.size() - 2);
    } else {
      // The program reads a text from such a line too: take that one.
      if (at < stop) text = loaded[static_cast<std::size_t>(number)];
      file.note(line, format("text %d: must stand between two double quotes", number));
    }
    if (number < next) continue;
    file.texts[number] = {line, text};
    next = number + 1;
  }
}

}  // namespace

int LanguageFile::read(const std::string& path) {
  static const std::regex form("(.*/)?lang_([0-2][0-9]|3[01])\\.ini");
  std::smatch found;
  if (!std::regex_match(path, found, form)) return EINVAL;
  const std::string folder = found[1].matched ? found.str(1) : "./";
  if (!set_program_dir(folder)) return ENAMETOOLONG;
  std::ifstream stream(path, std::ios::binary);
  if (!stream) return errno;
  const std::string bytes(std::istreambuf_iterator<char>(stream), {});

  number = std::stoi(found[2]);
  lines = split_lines(bytes);
  check_name(*this, folder);
  std::vector<std::string> loaded;
  const int result = load_texts(number, loaded);
  if (result == ENOMEM) return ENOMEM;
  const auto section = std::find(lines.begin(), lines.end(), "[Harrier]");
  has_section = result == 0 && section != lines.end();
  if (!has_section) {
    note(1, "the file has no line [Harrier]: the program ends with status 5");
    return 0;
  }
  read_lines(*this, static_cast<std::size_t>(section - lines.begin()) + 1, loaded);
  if (!bytes.ends_with('\n')) note(static_cast<int>(lines.size()), "the last line has no line end");
  return 0;
}

std::string LanguageFile::text(int id) const {
  const auto found = texts.find(id);
  return found == texts.end() ? "" : found->second.text;
}

void LanguageFile::note_text(int id, const std::string& message, bool remark) {
  const auto at = texts.lower_bound(id);
  const text::Row* const row = text::find_row(id);
  std::string whole = format("text %d", id);
  if (row != nullptr) whole += format(" (%s)", row->name);
  findings.push_back({at == texts.end() ? static_cast<int>(lines.size()) : at->second.line,
                      whole + ": " + message, remark});
}

bool is_clean(std::string_view text) {
  if (printable(text) != text) return false;
  while (!text.empty()) {
    const std::string_view character = first_character(text);
    if (character.size() == 1 && (character[0] & 0x80) != 0) return false;
    text.remove_prefix(character.size());
  }
  return true;
}

std::vector<std::vector<std::string>> load_languages() {
  std::vector<std::vector<std::string>> languages;
  for (int language = 0; language < language_count; ++language) {
    std::vector<std::string> texts;
    if (load_texts(language, texts) != 0) break;
    texts.resize(text_count);
    languages.push_back(texts);
  }
  return languages;
}
