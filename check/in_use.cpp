#include "check/in_use.h"

#include <algorithm>
#include <iterator>
#include <utility>

Entry entry_of(const Source& source, std::string_view family, int index) {
  const auto families = families_of(source.file);
  const auto at = std::find_if(families.begin(), families.end(),
                               [family](const Family& each) { return each.name == family; });
  return {source, *at, index};
}

std::string name_of(const Entry& entry) {
  const int file = entry.source.file;
  return SectionNames[file][section_number(file, entry.family, entry.index)];
}

void add_finding(Class kind, const Entry& entry, std::string_view key, Facts facts) {
  const auto fields = entry.family.fields;
  const auto field = std::find_if(fields.begin(), fields.end(),
                                  [key](const Field& each) { return each.key == key; });
  const int section = section_number(entry.source.file, entry.family, entry.index);
  facts.section = name_of(entry);
  facts.key = key;
  add_finding(kind, entry.source.shown,
              line_of(entry.source, section, key_number(entry.family, *field)), std::move(facts));
}

bool is_whole_folder() {
  return std::all_of(std::begin(sources), std::end(sources),
                     [](const Source& source) { return source.checked; });
}

bool is_used_ups(int slot) { return slot >= 0 && slot < ups_count && !INI.ups[slot].Name.empty(); }

std::vector<int> used_groups() {
  std::vector<int> groups;
  for (int i = 0; i < group_count; ++i) {
    if (!INI.group[i].Name.empty()) groups.push_back(i);
  }
  return groups;
}

bool groups_are_enabled() { return !is_loaded(main_file) || INI.system.EnabledGroups != 0; }

std::vector<UsedJob> used_jobs() {
  std::vector<UsedJob> jobs;
  jobs.reserve(job_count + group_count * event_count);
  const Entry first_job = entry_of(source_of(jobs_file), "Job_", 0);
  for (int i = 0; i < job_count && INI.system.DisableJobs == 0; ++i) {
    jobs.push_back({{first_job.source, first_job.family, i}, INI.job[i]});
  }
  if (!groups_are_enabled()) return jobs;
  for (const int group : used_groups()) {
    const Entry first = entry_of(source_of(group_file, group), "Event_", 0);
    for (int i = 0; i < event_count; ++i) {
      const GroupEvent& event = INI.group[group].events[i];
      if (event.Type[0] != 0) jobs.push_back({{first.source, first.family, i}, event.job});
    }
  }
  return jobs;
}
