// The table from which the Ansible role writes its files: drawn from that of the program, so that
// the two cannot drift apart.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "config/families.h"
#include "tests/folder.h"
#include "tests/golden.h"

namespace {

/// Returns what the program writes for a value that is empty or 0, as a row of the table has it.
std::string default_of(const Field& field, const void* defaults) {
  if (defaults == nullptr) return "";
  if (field.kind == Kind::text) {
    const std::string_view text = text_at(field, defaults);
    return text.empty() ? "" : ", default: " + std::string(text);
  }
  const unsigned number = number_at(field, defaults);
  return number == 0 ? "" : ", default: " + std::to_string(number);
}

std::string key_row(const Field& field, const void* defaults) {
  std::string row = "        ";
  row += field.key;
  if (field.kind == Kind::text)
    row += ": { text: " + std::to_string(field.width);
  else
    row += field.kind == Kind::u16 ? ": { number: 65535" : ": { number: 255";
  return row + default_of(field, defaults) + " }\n";
}

std::string family_rows(const Family& family, bool members) {
  std::vector<std::byte> entry;
  if (family.defaults != nullptr) {
    entry.resize(family.size);
    family.defaults(entry.data());
  }
  std::string rows = "    - section: ";
  rows.append(family.name).append("\n");
  if (family.count != 0) rows += "      entries: " + std::to_string(family.stored) + "\n";
  if (family.only_used) rows += "      only_used: true\n";
  if (members) rows += "      zeros: false\n";
  rows += "      keys:\n";
  for (const Field& field : family.fields)
    rows += key_row(field, entry.empty() ? nullptr : entry.data());
  return rows;
}

TEST(AnsibleRole, KnowsTheFilesOfTheProgram) {
  struct File {
    IniFile file;
    const char* name;
  };
  constexpr File files[] = {{main_file, "kestrel.ini"},
                            {jobs_file, "jobs.ini"},
                            {job_states_file, "jobsSTS.ini"},
                            {group_file, "group_NN.ini"},
                            {sensor_file, "sensor.ini"}};
  std::string drawn =
      "---\n"
      "# What the files can hold. Drawn by ./test --draw: do not edit.\n"
      "# text: bytes at most, number: largest value, default: written for an empty text or 0,\n"
      "# entries: numbered from 00, only_used: others are not written, zeros: whether 0 is "
      "written.\n"
      "kestrel_format:\n";
  for (const auto& [file, name] : files) {
    drawn.append("  ").append(name).append(":\n");
    const auto families = families_of(file);
    for (const Family& family : families) {
      drawn += family_rows(family, file == group_file && &family == &families[group_members]);
    }
  }
  expect_drawn(source_dir() + "/integrations/ansible/roles/kestrel/vars/main.yml", drawn);
}

}  // namespace
