#include "check/explain.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <string_view>
#include <vector>

#include "check/classes.h"
#include "check/nearest.h"
#include "command/command.h"
#include "tui/format.h"

namespace {

constexpr int longest_name = 18;
constexpr std::size_t width = 80;

/// The sentence of a class with words for its parts.
std::string form_of(const ClassRow& row) {
  constexpr std::string_view words[][2] = {
      {"{name}", "NAME"},        {"{before}", "TEXT"},     {"{after}", "RESULT"},
      {"{before_size}", "SIZE"}, {"{after_size}", "SIZE"}, {"{other}", "..."},
  };
  std::string form(row.sentence);
  for (const auto& [part, word] : words) {
    for (std::size_t at; (at = form.find(part)) != std::string::npos;) {
      form.replace(at, part.size(), word);
    }
  }
  return form;
}

/// Breaks a text between words into lines of at most 80 columns.
std::string wrapped(std::string_view text, const std::string& indent) {
  std::string lines;
  while (!text.empty()) {
    std::size_t end = text.size();
    if (indent.size() + end > width) {
      end = text.rfind(' ', width - indent.size());
      if (end == std::string_view::npos) end = std::min(text.find(' '), text.size());
    }
    lines.append(indent).append(text.substr(0, end)).append("\n");
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return lines;
}

int refuse(const std::string& name) {
  std::vector<std::string> names;
  for (const ClassRow& row : class_rows()) names.push_back(name_of(row));
  const std::vector<std::string_view> views(names.begin(), names.end());
  const std::string nearest(nearest_name(name, views));
  complain(
      "there is no class \"" + name + "\". " +
      (nearest.empty() ? "harrier-check --list lists all" : "Did you mean \"" + nearest + "\"?"));
  return EINVAL;
}

}  // namespace

void put_list() {
  for (const ClassRow& row : class_rows()) {
    put_out(format("%-*s %-7s %-7s %s\n", longest_name, name_of(row).c_str(),
                   std::string(name_of(row.level)).c_str(), std::string(name_of(row.group)).c_str(),
                   form_of(row).c_str()));
  }
}

int put_explanation(const std::string& name) {
  const auto rows = class_rows();
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const ClassRow& each) { return name_of(each) == name; });
  if (row == rows.end()) return refuse(name);
  put_out(name + ": " + std::string(name_of(row->level)) + " (" + std::string(name_of(row->group)) +
          ")\n\n" + wrapped(form_of(*row), "    ") + "\n" + wrapped(row->explanation, ""));
  return 0;
}
