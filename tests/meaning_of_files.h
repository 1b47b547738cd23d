#pragma once

#include <string_view>
#include <vector>

/// What the lines of a configuration file mean to a person who reads them. Shares nothing with the
/// reader of the program, so that the two can be held against each other.

/// A line, as it looks. The texts are parts of the file's bytes.
struct Statement {
  int line = 0;             // from 1 on
  int header_line = 0;      // that of the header above it, its own for a header, 0 for none
  std::string_view header;  // between the brackets
  std::string_view key;     // empty for a header or a remark
  std::string_view value;   // without quotes, and without blanks around them
  bool quoted = false;
  bool strange = false;   // none of these, or a header with more after it
  std::string_view text;  // the line
};

/// The lines of `before` that `after` no longer says: `after` is the same file once it has been
/// loaded and saved. Numbers are compared as numbers. The two remarks that every save writes are
/// not missed.
std::vector<Statement> lost_lines(std::string_view before, std::string_view after);
