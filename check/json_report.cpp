#include "check/json_report.h"

#include <nlohmann/json.hpp>
#include <string_view>

#include "check/finding.h"
#include "command/command.h"

namespace {

using Json = nlohmann::ordered_json;

/// Bytes that are not UTF-8 become U+FFFD.
std::string text_of(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// An empty fact is there when the sentence shows it: a text may become empty.
void add_fact(Json& json, const char* name, const std::string& fact, std::string_view sentence) {
  if (!fact.empty() || sentence.find(std::string("{") + name) != std::string_view::npos) {
    json[name] = fact;
  }
}

Json json_of(const Finding& finding) {
  const ClassRow& row = row_of(finding.kind);
  Json json = {
      {"file", finding.file},
      {"line", finding.line},
      {"level", name_of(row.level)},
      {"class", name_of(row)},
  };
  add_fact(json, "section", finding.facts.section, row.sentence);
  add_fact(json, "key", finding.facts.key, row.sentence);
  json["message"] = sentence_of(finding);
  add_fact(json, "before", finding.facts.before, row.sentence);
  add_fact(json, "after", finding.facts.after, row.sentence);
  return json;
}

}  // namespace

void put_json(const std::string& folder) {
  put_out("{\"version\":" + text_of(HARRIER_VERSION));
  if (!folder.empty()) put_out(",\n\"folder\":" + text_of(folder));
  Json counts;
  for (const Level level : {Level::error, Level::warning, Level::note}) {
    counts[std::string(name_of(level))] = count_of(level);
  }
  put_out(",\n\"counts\":" + text_of(counts) + ",\n\"findings\":[");
  // One after the other: all of them as one value would take much more memory.
  const char* separator = "\n";
  for (const Finding& finding : findings) {
    put_out(separator + text_of(json_of(finding)));
    separator = ",\n";
  }
  put_out("\n]}\n");
}
