#include "check/finding.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "check/secret.h"
#include "command/escaped.h"

std::vector<Finding> findings;

namespace {

/// A hostile file shall not fill the memory.
constexpr std::size_t most_findings = 10000;

/// "UPS_02.Port", or the section alone.
std::string name_of(const Facts& facts) {
  return facts.key.empty() ? facts.section : facts.section + "." + facts.key;
}

std::string part_of(const Finding& finding, std::string_view part) {
  const Facts& facts = finding.facts;
  if (part == "name") return escaped(name_of(facts));
  if (part == "before") return escaped(facts.before);
  if (part == "after") return escaped(facts.after);
  if (part == "before_size") return std::to_string(finding.before_size);
  if (part == "after_size") return std::to_string(finding.after_size);
  return escaped(facts.other);
}

/// No report gets to see what it must not show.
void hide_value(Facts& facts) {
  if (!is_hidden(facts.key)) return;
  for (std::string* const value : {&facts.before, &facts.after}) {
    if (!value->empty()) *value = "(hidden)";
  }
}

}  // namespace

void add_finding(Class kind, const std::string& file, int line, Facts facts) {
  if (findings_are_full()) return;
  if (findings.size() == most_findings) {
    findings.push_back({Class::more_findings, file, line, {}});
    return;
  }
  const std::size_t before_size = facts.before.size();
  const std::size_t after_size = facts.after.size();
  hide_value(facts);
  findings.push_back({kind, file, line, std::move(facts), before_size, after_size});
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
    sentence += part_of(finding, form.substr(1, close - 1));
    form.remove_prefix(close + 1);
  }
  return sentence;
}

int count_of(Level level) {
  return static_cast<int>(std::count_if(
      findings.begin(), findings.end(),
      [level](const Finding& finding) { return row_of(finding.kind).level == level; }));
}
