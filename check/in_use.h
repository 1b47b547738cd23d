#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "check/finding.h"
#include "check/source.h"
#include "config/families.h"
#include "config/record.h"

/// The entries of the configuration that are in use. What is wrong with others does no harm.

/// A section of a file.
struct Entry {
  const Source& source;
  const Family& family;
  int index;  // within the family
};

/// Section `index` of the family with this name, such as "UPS_".
Entry entry_of(const Source& source, std::string_view family, int index = 0);

/// The name of the section: "UPS_02".
std::string name_of(const Entry& entry);

/// Adds a finding about a value, on its line. Sets `section` and `key` of the facts.
void add_finding(Class kind, const Entry& entry, std::string_view key, Facts facts = {});

/// Whether all files are part of this run, and lie in `ProgramDir`.
bool is_whole_folder();

/// Whether a UPS slot is in use; false for a number outside the table.
bool is_used_ups(int slot);

/// The numbers of the groups in use.
std::vector<int> used_groups();

/// Whether `EnabledGroups` is on, or not known.
bool groups_are_enabled();

/// The actions of an event.
struct UsedJob {
  Entry entry;
  const Job& job;
};

/// The jobs, unless `DisableJobs` is on, and then the events in use of the groups, while they are
/// enabled.
std::vector<UsedJob> used_jobs();
