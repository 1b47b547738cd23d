#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/operator.h"
#include "tests/tables.h"

/// A person who goes through the program by the lines of a table and looks at what comes of it:
/// tests/data/walks.txt tells how they are written. Whatever is done, every screen has to fit its
/// frame, and menus and questions have to have the terminal as they need it.
class Walk {
 public:
  /// Starts the program in a new folder with these files.
  explicit Walk(const Folder::Files& files = demo_with(""), const Options& options = {});

  void go(const Line& line);

  /// One cell of a line: something to do, or something to see.
  void act(const std::string& cell) { take(cell, &Walk::choose); }
  void look(const std::string& cell) { take(cell, &Walk::see); }

  void go_home();  // to the main menu

  /// What the files have to hold at the end of the run; with `alone` nothing else may change then.
  void keep(const std::string& values, bool alone);

  /// Ends the run, saving if a file has to change, and looks at the files. A run that saves nothing
  /// leaves the files as they are.
  void finish();

  void run();  // starts the program again

  Operator& op() { return *op_; }
  const Folder& folder() const { return *folder_; }

 private:
  void set(const Line& line);
  void take(const std::string& cell, void (Walk::*otherwise)(const std::string&));
  void choose(const std::string& path);
  void see(const std::string& text) { op_->expect(text); }

  Options options_;
  std::optional<Folder> folder_;
  std::optional<Operator> op_;
  Folder::Files expected_;
  std::vector<Value> kept_;
  bool alone_ = false;
  bool saves_ = false;
};

/// Moves the arrow of a screen down as far as it goes, and up again, and returns the lines it has
/// stood on: "1 2 4 2 1". Lines are counted from the one it begins on.
std::string arrow_path(Operator& op);
