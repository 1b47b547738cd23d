#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/operator.h"
#include "tests/tables.h"

/// A person who goes through the program by the lines of a table (tests/data/walks.txt). After each
/// step the screen must fit its frame, and the terminal be in the mode of a menu or a question.
class Walk {
 public:
  /// Starts the program in a new folder with these files.
  explicit Walk(const Folder::Files& files = demo_with(""), const Options& options = {});

  void go(const Line& line);

  void take(const std::string& cell);  // does something, or looks for something

  void go_home();  // to the main menu

  /// Adds values that the files must hold at the end of the run. With `alone` nothing else may
  /// change.
  void keep(const std::string& values, bool alone);

  /// Ends the run and compares the files. Saves if a configuration file must change; otherwise the
  /// program must not ask, and all files must stay as they are.
  void finish();

  void run();  // starts the program again

  Operator& op() { return *op_; }
  const Folder& folder() const { return *folder_; }

 private:
  void set(const Line& line);

  Options options_;
  std::optional<Folder> folder_;
  std::optional<Operator> op_;
  Folder::Files expected_;
  std::vector<Value> kept_;
  bool alone_ = false;
  bool saves_ = false;
};

/// Moves the arrow down as far as it goes, and up again. Returns the lines it has stood on:
/// "1 2 4 2 1". Line 1 is the line where it begins.
std::string arrow_path(Operator& op);
