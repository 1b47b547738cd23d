#include "tests/meaning_of_files.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace {

using Values =
    std::map<std::pair<std::string_view, std::string_view>, Statement>;  // by header and key

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\v\f";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool is_remark(std::string_view text) { return text.starts_with(';') || text.starts_with('#'); }

bool is_remark_of_a_save(std::string_view text) {
  return text == "; This is file with configuration parameters for KESTREL" ||
         text == "; Do not change any line !";
}

/// Notes what a line says. `now` is the statement before it, and becomes the one of this line.
void read_line(std::string_view text, Statement& now) {
  now.text = text;
  now.strange = now.quoted = false;
  now.key = now.value = {};
  if (is_remark(text)) return;
  if (text.starts_with('[')) {
    const std::size_t end = std::min(text.find(']'), text.size());
    now.header_line = now.line;
    now.header = text.substr(1, end - 1);
    now.strange = end + 1 != text.size();
    return;
  }
  const std::size_t equals = text.find('=');
  now.strange = equals == std::string_view::npos;
  if (now.strange) return;
  now.key = trimmed(text.substr(0, equals));
  std::string_view value = trimmed(text.substr(equals + 1));
  now.quoted = value.size() >= 2 && value.starts_with('"') && value.ends_with('"');
  if (now.quoted) value = value.substr(1, value.size() - 2);
  now.value = value;
}

/// The digits of a whole number without needless ones, with a sign if it is negative. Any other
/// text stays as it is.
std::string plain_number(std::string_view text) {
  std::string_view digits = trimmed(text);
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  if (digits.empty() || digits.find_first_not_of("0123456789") != std::string_view::npos)
    return std::string(text);
  while (digits.size() > 1 && digits[0] == '0') digits.remove_prefix(1);
  return (negative && digits != "0" ? "-" : "") + std::string(digits);
}

std::string capitals(std::string_view small) {
  std::string text(small);
  for (char& letter : text)
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  return text;
}

/// Whether a saved line says what this one said. A save puts texts in quotes, and numbers in none.
bool same_value(const Statement& before, const Statement& after) {
  if (!after.quoted) return plain_number(before.value) == after.value;
  // The code of a schedule is hexadecimal.
  const bool code = after.key == "Data" && after.value.size() == 18;
  return before.value == after.value || (code && capitals(before.value) == after.value);
}

/// The lines of a file, without the blank ones.
std::vector<Statement> statements_of(std::string_view bytes) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";  // nobody sees it
  if (bytes.starts_with(mark)) bytes.remove_prefix(mark.size());
  std::vector<Statement> statements;
  Statement now;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    ++now.line;
    const std::string_view text = trimmed(bytes.substr(0, end));
    if (!text.empty()) {
      read_line(text, now);
      statements.push_back(now);
    }
    bytes.remove_prefix(std::min(bytes.size(), end + 1));
  }
  return statements;
}

}  // namespace

std::vector<Statement> lost_lines(std::string_view before, std::string_view after) {
  std::set<std::string_view> headers;
  Values values;
  for (const Statement& statement : statements_of(after)) {
    headers.insert(statement.header);
    values[{statement.header, statement.key}] = statement;
  }
  std::vector<Statement> lost;
  for (const Statement& statement : statements_of(before)) {
    const auto kept = values.find({statement.header, statement.key});
    const bool is_header = statement.line == statement.header_line;
    const bool found = statement.strange            ? false
                       : is_remark(statement.text)  ? is_remark_of_a_save(statement.text)
                       : is_header                  ? headers.contains(statement.header)
                       : statement.header_line == 0 ? false
                       : kept == values.end()       ? false
                                                    : same_value(statement, kept->second);
    if (!found) lost.push_back(statement);
  }
  return lost;
}
