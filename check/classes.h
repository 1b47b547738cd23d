#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// The classes of findings: what can be wrong with a configuration. `check/classes.inc` has a row
/// for each.

enum class Level : std::uint8_t {
  note,     // a save drops something without harm
  warning,  // a save drops or moves something, or a setting cannot have an effect
  error,    // the program does not start, or takes a value for another than it looks
};

enum class ClassGroup : std::uint8_t { reading, values, saving, files, meaning };

enum class Class : std::uint8_t {
#define CLASS(id, level, group, sentence, explanation) id,
#include "check/classes.inc"
#undef CLASS
};

struct ClassRow {
  Class kind;
  std::string_view id;  // with "_"
  Level level;
  ClassGroup group;
  std::string_view sentence;  // with the names of its parts in braces
  std::string_view explanation;
};

/// All classes, in the order of the enumeration.
std::span<const ClassRow> class_rows();

const ClassRow& row_of(Class kind);

/// The name of a class: "text-cut".
std::string name_of(const ClassRow& row);

/// "error", "warning" or "note".
std::string_view name_of(Level level);

/// "reading", "values" and so on.
std::string_view name_of(ClassGroup group);
