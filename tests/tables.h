#pragma once

#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "tests/folder.h"

/// A line of a table. Cells have no blanks around them, "x{40}" is 40 times "x", those missing
/// are empty.
struct Line {
  int number = 0;  // in its file
  std::vector<std::string> cells;
  const std::string& operator[](std::size_t cell) const;
};

struct Table {
  std::string name;
  std::vector<Line> lines;
};

/// The name of a table as GoogleTest takes it: letters and digits.
constexpr auto table_name = [](const auto& table) {
  std::string name = table.param.name;
  std::erase_if(name, [](unsigned char byte) { return std::isalnum(byte) == 0; });
  return name;
};

/// Reads the tables of a file in tests/data. "[name]" begins a table, "#" a comment, and " | "
/// separates two cells. Throws when there are none, or when one is empty, so that no case is lost
/// in silence.
std::vector<Table> read_tables(std::string_view name);

/// The text with wordings for references: "$new_value" becomes the English text of that name in
/// lang/texts.inc. Throws when no text has that name.
std::string english(std::string text);

/// The text with keys for their names, and bytes for their hexadecimal numbers: "Sam<Enter><C3>"
/// becomes "Sam\r\xc3".
std::string keys(const std::string& text);

/// The text after one replacement after the other, each wherever its first text stands.
using Replacements = std::vector<std::pair<std::string, std::string>>;
std::string replaced(std::string text, const Replacements& replacements);

/// A key of a configuration file and its value, with quotes if it has any.
struct Value {
  std::string file;
  std::string section;
  std::string key;
  std::string text;
};

/// Reads the values of a cell: "Network.Port=5566; SNMP=1; jobs.ini:Job_00.Log=1". Without a file
/// name the file is kestrel.ini, without a section it is that before. Takes `english` and `keys`.
std::vector<Value> read_values(std::string_view cell);

/// Puts values into files. Adds missing sections at the end of a file.
void put_values(Folder::Files& files, std::string_view cell);

/// The demo configuration with these values.
Folder::Files demo_with(std::string_view values);
