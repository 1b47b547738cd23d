#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/folder.h"

/// A line of a table: its cells without the blanks around them, "x{40}" replaced by 40 times "x".
/// Cells at the end that the line does not have are empty.
struct Line {
  int number = 0;  // in its file
  std::vector<std::string> cells;
  const std::string& operator[](std::size_t cell) const;
};

struct Table {
  std::string name;
  std::vector<Line> lines;
};

/// The tables of a file in tests/data: "[name]" begins one, "#" a comment, and " | " stands between
/// two cells. Throws when there are none, so that no case is lost in silence.
std::vector<Table> read_tables(std::string_view name);
std::vector<Line> read_table(std::string_view name);  // the first one alone

/// A text with names of keys as it is typed: "Sam<Enter><Esc>".
std::string keys(std::string text);

/// The name of a table as that of a case.
std::string case_name(const Table& table);

/// What a key of a configuration file holds, with its quotes if it has any.
struct Value {
  std::string file;
  std::string section;
  std::string key;
  std::string text;
};

/// Values as a cell holds them: "Network.Port=5566; SNMP=1; jobs.ini:Job_00.Log=1". Without a name
/// they are of kestrel.ini, and without a section of that of the value before.
std::vector<Value> read_values(std::string_view cell);

/// Puts values into files, in new sections at their end where they have none yet.
void put_values(Folder::Files& files, std::string_view cell);

/// The demo configuration with these values.
Folder::Files demo_with(std::string_view values);
