#include "check/finding.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "tui/columns.h"
#include "tui/format.h"

std::vector<Finding> findings;

namespace {

/// A hostile file shall not fill the memory.
constexpr std::size_t most_findings = 10000;

/// Characters that look like a blank or like nothing. They come with texts from word processors,
/// mail and web pages.
bool is_hidden(std::string_view character) {
  constexpr std::string_view hidden[] = {
      "\u00A0", "\u00AD", "\u200B", "\u200C", "\u200D",
      "\u200E", "\u200F", "\u202F", "\u2060", "\uFEFF",
  };
  return std::find(std::begin(hidden), std::end(hidden), character) != std::end(hidden);
}

/// "UPS_02.Port", or the section alone.
std::string name_of(const Facts& facts) {
  return facts.key.empty() ? facts.section : facts.section + "." + facts.key;
}

std::string part_of(const Facts& facts, std::string_view part) {
  if (part == "name") return escaped(name_of(facts));
  if (part == "before") return escaped(facts.before);
  if (part == "after") return escaped(facts.after);
  if (part == "before_size") return std::to_string(facts.before.size());
  if (part == "after_size") return std::to_string(facts.after.size());
  return escaped(facts.other);
}

}  // namespace

void add_finding(Class kind, const std::string& file, int line, Facts facts) {
  if (findings_are_full()) return;
  if (findings.size() == most_findings)
    findings.push_back({Class::more_findings, file, line, {}});
  else
    findings.push_back({kind, file, line, std::move(facts)});
}

bool findings_are_full() { return findings.size() > most_findings; }

void sort_findings() {
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    const Level a_level = row_of(a.kind).level;
    const Level b_level = row_of(b.kind).level;
    return std::tie(a.file, a.line, b_level) < std::tie(b.file, b.line, a_level);
  });
}

std::string sentence_of(const Finding& finding) {
  std::string_view form = row_of(finding.kind).sentence;
  std::string sentence;
  while (!form.empty()) {
    const std::size_t open = std::min(form.find('{'), form.size());
    sentence += form.substr(0, open);
    form.remove_prefix(open);
    if (form.empty()) break;
    const std::size_t close = form.find('}');
    sentence += part_of(finding.facts, form.substr(1, close - 1));
    form.remove_prefix(close + 1);
  }
  return sentence;
}

int count_of(Level level) {
  return static_cast<int>(std::count_if(
      findings.begin(), findings.end(),
      [level](const Finding& finding) { return row_of(finding.kind).level == level; }));
}

std::string escaped(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::string_view character = first_character(text);
    text.remove_prefix(character.size());
    const bool no_utf8 = character.size() == 1 && (character[0] & 0x80) != 0;
    if (!no_utf8 && !is_hidden(character) && printable(character) == character) {
      shown += character;
      continue;
    }
    for (const char byte : character) {
      shown += format("\\x%02x", static_cast<unsigned char>(byte));
    }
  }
  return shown;
}
