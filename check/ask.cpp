#include "check/ask.h"

#include <unistd.h>

#include <algorithm>
#include <vector>

#include "check/finding.h"
#include "check/text_report.h"
#include "command/command.h"
#include "command/escaped.h"
#include "tui/format.h"

namespace {

constexpr std::size_t most = 10;

/// Notes are of things that go without harm, but nobody should lose a remark unasked. A value that
/// the editor itself saved, such as a switch of 7, stays as it is, unless it is taken for another.
bool is_at_risk(const Finding& finding) {
  const ClassRow& row = row_of(finding.kind);
  switch (row.group) {
    case ClassGroup::reading:
    case ClassGroup::saving:
      return row.level != Level::note || finding.kind == Class::remark;
    case ClassGroup::values:
      return row.level == Level::error;
    default:
      return false;
  }
}

/// Waits for the end of a line. Returns false at the end of input. Reads no further: the rest is
/// for the editor.
bool read_enter() {
  for (char key = 0; key != '\n';) {
    if (read(STDIN_FILENO, &key, 1) <= 0) return false;
  }
  return true;
}

}  // namespace

bool ask_before_edit(const std::string& command) {
  std::vector<const Finding*> shown;
  for (const Finding& finding : findings) {
    if (is_at_risk(finding)) shown.push_back(&finding);
  }
  if (shown.empty()) return true;
  std::stable_sort(shown.begin(), shown.end(), [](const Finding* a, const Finding* b) {
    return row_of(a->kind).level > row_of(b->kind).level;
  });
  put_out("These lines are not taken as they look, or a save drops or moves them:\n\n");
  const bool colours = has_colours(stdout);
  const std::size_t count = std::min(shown.size(), most);
  for (std::size_t i = 0; i < count; ++i) put_out(text_of(*shown[i], colours));
  if (shown.size() > count) {
    put_out(format("and %zu more: %s shows all\n", shown.size() - count, escaped(command).c_str()));
  }
  put_out("\nPress Enter to edit all the same, Ctrl-C to stop ");
  finish_output();
  return read_enter();
}
