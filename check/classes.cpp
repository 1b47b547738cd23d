#include "check/classes.h"

#include <algorithm>

namespace {

constexpr ClassRow rows[] = {
#define CLASS(id, level, group, sentence, explanation) \
  {Class::id, #id, Level::level, ClassGroup::group, sentence, explanation},
#include "check/classes.inc"
#undef CLASS
};

}  // namespace

std::span<const ClassRow> class_rows() { return rows; }

const ClassRow& row_of(Class kind) { return rows[static_cast<std::size_t>(kind)]; }

std::string name_of(const ClassRow& row) {
  std::string name(row.id);
  std::replace(name.begin(), name.end(), '_', '-');
  return name;
}

std::string_view name_of(Level level) {
  constexpr std::string_view names[] = {"note", "warning", "error"};
  return names[static_cast<std::size_t>(level)];
}

std::string_view name_of(ClassGroup group) {
  constexpr std::string_view names[] = {"reading", "values", "saving", "files", "meaning"};
  return names[static_cast<std::size_t>(group)];
}
