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
#include "menus/screen_kit.h"
#include "tui/columns.h"
#include "tui/diag.h"

namespace {

/// Loads a language from `ProgramDir` as the program does: the texts up to the one where it stops
/// reading. Returns 0 or what `AllocText` or `LoadText` returned.
int load_texts(int language, std::vector<std::string>& texts) {
  if (AllocText() != 0) return ENOMEM;
  const int result = LoadText(harrier, static_cast<signed char>(language));
  for (int number = 0; number < text_count; ++number) {
    if (LangText[number] == format("Text %03d", number)) break;
    texts.emplace_back(LangText[number]);
  }
  FreeText();
  return result;
}

bool set_program_dir(const std::string& folder) {
  if (folder.size() >= program_dir_size) return false;
  ProgramDir[folder.copy(ProgramDir, program_dir_size)] = '\0';
  return true;
}

/// The names of all texts that the program uses, by their numbers.
std::map<int, std::string> load_names() {
  static const std::regex row("\n *([a-z0-9_]+) = ([a-z0-9_]+)");
  std::ifstream file(HARRIER_SOURCE_DIR "/lang/text_ids.h");
  const std::string header(std::istreambuf_iterator<char>(file), {});
  std::map<std::string, int> numbers;
  std::map<int, std::string> names;
  for (std::sregex_iterator at(header.begin(), header.end(), row), end; at != end; ++at) {
    const auto other = numbers.find((*at)[2]);
    const std::string name = (*at)[1];
    numbers[name] = other != numbers.end() ? other->second : std::stoi((*at)[2]);
    // The bases are not texts: what is added to them begins at 1 and at 22.
    if (!name.ends_with("_base") && name != "last_used") names[numbers[name]] = name;
  }
  return names;
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

/// Takes the texts out of their lines, from line `at` on, and tells where that is not what the
/// program does; `loaded` is what the program read.
void read_lines(LanguageFile& file, std::size_t at, const std::vector<std::string>& loaded) {
  static const std::regex key("String([0-9]{3,4})=");
  const std::size_t stop = at + loaded.size();
  int next = 0;
  for (; at < file.lines.size() && !file.lines[at].starts_with('['); ++at) {
    const int line = static_cast<int>(at) + 1;
    std::smatch found;
    // Behind the last text anything may follow.
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
      // The program takes something out of such a line too.
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
  names = load_names();
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
  const auto name = names.find(id);
  std::string whole = format("text %d", id);
  if (name != names.end()) whole += " (" + name->second + ")";
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

std::vector<std::vector<std::string>> load_shipped() {
  std::vector<std::vector<std::string>> shipped;
  if (!set_program_dir(HARRIER_SOURCE_DIR "/languages/")) return shipped;
  for (int language = 0; language < language_count; ++language) {
    std::vector<std::string> texts;
    if (load_texts(language, texts) != 0) break;
    texts.resize(text_count);
    shipped.push_back(texts);
  }
  return shipped;
}
