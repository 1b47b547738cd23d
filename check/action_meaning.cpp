#include "check/action_meaning.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "check/in_use.h"
#include "check/program_file.h"
#include "tui/format.h"

namespace {

/// Actions of a file about which the same is to be said.
struct Alike {
  Entry first;
  Facts facts;
  int others;
};

/// Adds findings for the jobs of which `look` returns facts with `other`.
void check_jobs(Class kind, const char* key, const std::function<Facts(const Job&)>& look) {
  std::vector<Alike> found;
  for (const UsedJob& used : used_jobs()) {
    Facts facts = look(used.job);
    if (facts.other.empty()) continue;
    const auto same = std::find_if(found.begin(), found.end(), [&](const Alike& alike) {
      return &alike.first.source == &used.entry.source && alike.facts.before == facts.before &&
             alike.facts.other == facts.other;
    });
    if (same == found.end())
      found.push_back({used.entry, std::move(facts), 0});
    else
      ++same->others;
  }
  for (Alike& alike : found) {
    if (alike.others != 0) alike.facts.other += format(" (and %d more like this)", alike.others);
    add_finding(kind, alike.first, key, std::move(alike.facts));
  }
}

/// "a, b and c", without the empty ones.
std::string enumerated(std::vector<std::string> parts) {
  std::erase(parts, "");
  std::string text;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i != 0) text += i + 1 == parts.size() ? " and " : ", ";
    text += parts[i];
  }
  return text;
}

}  // namespace

void check_programs() {
  check_jobs(Class::no_program, "Execute", [](const Job& job) -> Facts {
    if (job.Execute == 0 || !job.File.empty()) return {};
    return {.other = "File is empty"};
  });
  if (!is_whole_folder()) return;
  check_jobs(Class::program_missing, "File", [](const Job& job) -> Facts {
    if (job.Execute == 0) return {};
    const std::string command(job.File.view());
    return {.before = command, .other = fault_of_command(command)};
  });
}

void check_mail() {
  const bool has_recipient =
      std::any_of(std::begin(INI.email), std::end(INI.email), [](const Email& recipient) {
        return !recipient.Name.empty() && !recipient.EmailAddress.empty();
      });
  const std::string lacks = enumerated({
      INI.email_config.Allowed == 0 ? "EmailConfig.Allowed is 0" : "",
      INI.email_config.Server.empty() ? "EmailConfig.Server is empty" : "",
      has_recipient ? "" : "no section [Email_NN] has a Name and an EmailAddress",
  });
  check_jobs(Class::no_mail, "Email",
             [&lacks](const Job& job) -> Facts { return {.other = job.Email == 0 ? "" : lacks}; });
}

void check_sms() {
  const bool has_recipient = std::any_of(
      std::begin(INI.sms), std::end(INI.sms),
      [](const SMS& recipient) { return !recipient.Name.empty() && !recipient.TelNumber.empty(); });
  const std::string lacks = enumerated({
      INI.sms_config.Allowed == 0 ? "SMSConfig.Allowed is 0" : "",
      INI.sms_config.Port.empty() ? "SMSConfig.Port is empty" : "",
      has_recipient ? "" : "no section [SMS_NN] has a Name and a TelNumber",
  });
  check_jobs(Class::no_sms, "SMS",
             [&lacks](const Job& job) -> Facts { return {.other = job.SMS == 0 ? "" : lacks}; });
}
