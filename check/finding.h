#pragma once

#include <string>
#include <vector>

#include "check/classes.h"

/// What the checks have found.

/// What the sentence of a finding says. The texts hold bytes as they are in the files.
struct Facts {
  std::string section = {};  // without brackets
  std::string key = {};
  std::string before = {};  // what the file says
  std::string after = {};   // what becomes of it
  std::string other = {};   // what else the sentence needs
};

struct Finding {
  Class kind;
  std::string file;  // as the operator called it
  int line;          // from 1 on
  Facts facts;
  std::size_t before_size = 0;  // in bytes, of `before` and `after` as they are in the file
  std::size_t after_size = 0;
};

/// All findings of a run.
extern std::vector<Finding> findings;

/// Adds a finding, with "(hidden)" for the values of a key that is hidden, unless there are 10,000
/// already. The first beyond these becomes a last one of the class `more_findings`.
void add_finding(Class kind, const std::string& file, int line, Facts facts = {});

/// Whether no more findings are added, so that looking for them is in vain.
bool findings_are_full();

/// By file and line, errors of a line first; otherwise as they were found.
void sort_findings();

/// The sentence of a finding, fit for a terminal.
std::string sentence_of(const Finding& finding);

/// How many findings of a level there are.
int count_of(Level level);
