#include "tests/tables.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <stdexcept>

namespace {

std::string trimmed(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
  return std::string(text.substr(first, text.find_last_not_of(' ') + 1 - first));
}

/// Returns the parts of a text without the blanks around them.
std::vector<std::string> split(std::string_view text, std::string_view separator) {
  std::vector<std::string> parts;
  while (true) {
    const std::size_t end = text.find(separator);
    parts.push_back(trimmed(text.substr(0, end)));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + separator.size());
  }
}

std::string repeated(std::string line) {
  static const std::regex times("(.)\\{([0-9]+)\\}");
  for (std::smatch found; std::regex_search(line, found, times);) {
    line = found.prefix().str() + std::string(std::stoul(found[2]), found.str(1)[0]) +
           found.suffix().str();
  }
  return line;
}

}  // namespace

const std::string& Line::operator[](std::size_t cell) const {
  static const std::string none;
  return cell < cells.size() ? cells[cell] : none;
}

std::vector<Table> read_tables(std::string_view name) {
  std::ifstream file(source_dir() + "/tests/data/" + std::string(name));
  std::vector<Table> tables;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.empty() || line[0] == '#') continue;
    if (line.starts_with('[') && line.ends_with(']')) {
      tables.push_back({line.substr(1, line.size() - 2), {}});
    } else {
      tables.at(tables.size() - 1).lines.push_back({number, split(repeated(line), " |")});
    }
  }
  const auto is_empty = [](const Table& table) { return table.lines.empty(); };
  if (tables.empty() || std::any_of(tables.begin(), tables.end(), is_empty))
    throw std::runtime_error("no table, or one without lines, in " + std::string(name));
  return tables;
}

std::string english(std::string text) {
  static const std::map<std::string, int> numbers = {
#define TEXT(number, name, place) {#name, number},
#include "lang/texts.inc"
#undef TEXT
  };
  static const std::string language = read_file(source_dir() + "/languages/lang_00.ini");
  static const std::regex reference("\\$([a-z_]+)");
  for (std::smatch found; std::regex_search(text, found, reference);) {
    const std::string digits = std::to_string(1000 + numbers.at(found[1])).substr(1);
    const std::string quoted = ini_value(language, "Harrier", "String" + digits);
    text = found.prefix().str() + quoted.substr(1, quoted.size() - 2) + found.suffix().str();
  }
  return text;
}

std::string replaced(std::string text, const Replacements& replacements) {
  for (const auto& [part, other] : replacements) {
    std::size_t at = 0;
    for (; (at = text.find(part, at)) != std::string::npos; at += other.size()) {
      text.replace(at, part.size(), other);
    }
  }
  return text;
}

std::string keys(const std::string& text) {
  static const std::regex code("<(?:Ctrl-(.)|([0-9A-F]{2}))>");
  std::string typed = replaced(text, {{"<Enter>", "\r"},
                                      {"<LF>", "\n"},
                                      {"<Esc>", "\x1b"},
                                      {"<Erase>", "\x7f"},
                                      {"<Up>", "\x1b[A"},
                                      {"<Down>", "\x1b[B"}});
  for (std::smatch found; std::regex_search(typed, found, code);) {
    const int key = found[1].matched ? found.str(1)[0] & 0x1F : std::stoi(found[2], nullptr, 16);
    typed = found.prefix().str() + static_cast<char>(key) + found.suffix().str();
  }
  return typed;
}

std::vector<Value> read_values(std::string_view cell) {
  std::vector<Value> values;
  static const std::regex form("(?:(?:([^:=]+):)?([^.:=]+)\\.)?([^.:=]+)=(.*)");
  Value value;
  for (const std::string& part : split(cell, ";")) {
    std::smatch found;
    if (part.empty()) continue;
    const bool known = std::regex_match(part, found, form);
    if (found[2].matched) {
      value.file = found[1].matched ? found.str(1) : "kestrel.ini";
      value.section = found[2];
    }
    if (!known || value.section.empty()) throw std::runtime_error("no value: " + part);
    value.key = found[3];
    value.text = keys(english(found[4]));
    values.push_back(value);
  }
  return values;
}

void put_values(Folder::Files& files, std::string_view cell) {
  for (const Value& v : read_values(cell)) {
    files[v.file] = with_value(files[v.file], v.section, v.key, v.text);
  }
}

Folder::Files demo_with(std::string_view values) {
  Folder::Files files;
  for (const auto& entry : std::filesystem::directory_iterator(source_dir() + "/demo")) {
    // A folder has the language files already.
    if (!entry.is_symlink()) files[entry.path().filename()] = read_file(entry.path());
  }
  put_values(files, values);
  return files;
}
