// The table from which the Ansible role writes its files: drawn from that of the program, so that
// the two cannot drift apart.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "check/secret.h"
#include "config/families.h"
#include "tests/folder.h"
#include "tests/golden.h"

namespace {

/// The largest value, and what the program writes for a value that is empty or 0.
std::string key_row(const Field& field, const void* defaults) {
  const bool is_text = field.kind == Kind::text;
  const std::string limit = is_text                   ? "text: " + std::to_string(field.width)
                            : field.kind == Kind::u16 ? "number: 65535"
                                                      : "number: 255";
  const std::string value =
      is_text ? std::string(text_at(field, defaults)) : std::to_string(number_at(field, defaults));
  const std::string otherwise = value.empty() || value == "0" ? "" : ", default: " + value;
  return std::string("        ") + field.key + ": { " + limit + otherwise + " }\n";
}

std::string family_rows(const Family& family, bool members) {
  std::vector<std::byte> entry(family.size);
  if (family.defaults != nullptr) family.defaults(entry.data());
  std::string rows = std::string("    - section: ") + family.name + "\n";
  if (family.count != 0) rows += "      entries: " + std::to_string(family.stored) + "\n";
  if (family.only_used) rows += "      only_used: true\n";
  if (members) rows += "      zeros: false\n";
  rows += "      keys:\n";
  for (const Field& field : family.fields) rows += key_row(field, entry.data());
  return rows;
}

TEST(AnsibleRole, HidesWhatTheCheckHides) {
  const std::string module =
      read_file(source_dir() + "/integrations/ansible/roles/kestrel/library/kestrel_install.py");
  const std::size_t start = module.find("SECRET_KEYS = (");
  ASSERT_NE(start, std::string::npos);
  const std::string keys = module.substr(start, module.find(')', start) - start);
  for (const Family& family : families_of(main_file)) {
    for (const Field& field : family.fields) {
      const bool hidden = keys.find(std::string("\"") + field.key + "\"") != std::string::npos;
      EXPECT_EQ(hidden, is_hidden(field.key)) << field.key;
    }
  }
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
