#include "tests/walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <utility>

#include "tests/golden.h"
#include "tui/columns.h"

namespace {

/// The largest screen. A terminal may be larger.
constexpr int screen_rows = 24;
constexpr int widest_frame = 70;

struct View {
  std::string screen;
  int arrow;
  bool echo;
  bool asks;
  bool cursor_visible;
  bool operator==(const View&) const = default;
};

/// A script may go on while we look, so this looks until two looks agree.
View view_of(Operator& op) {
  const auto look = [&] {
    return View{op.screen(), op.arrow(), op.echo(), op.canonical(), op.cursor_visible()};
  };
  constexpr int most_looks = 100;
  View view = look();
  for (int i = 0; i < most_looks; ++i) {
    const View before = std::exchange(view, look());
    if (view == before) break;
  }
  return view;
}

void expect_tidy(Operator& op) {
  const View view = view_of(op);
  // A menu leaves the last column free. A question and the value above it may take several rows.
  const int line_columns = view.arrow == 0 ? op.cols() : op.cols() - 1;
  const int frame_columns = std::min(op.cols() - 1, widest_frame);
  std::istringstream lines(view.screen);
  int row = 0;
  for (std::string line; std::getline(lines, line); ++row) {
    EXPECT_LE(columns(line), line_columns) << view.screen;
    const bool rule = !line.empty() && line.find_first_not_of('-') == std::string::npos;
    const bool framed = rule || line.starts_with("****");
    EXPECT_TRUE(!framed || columns(line) == frame_columns) << view.screen;
  }
  EXPECT_LE(row, screen_rows) << view.screen;
  EXPECT_EQ(view.echo, view.asks) << view.screen;
  if (view.asks || view.arrow != 0) {
    EXPECT_EQ(view.cursor_visible, view.asks) << view.screen;
    EXPECT_EQ(view.arrow == 0, view.asks) << view.screen;
  }
}

void choose_line(Operator& op, const std::string& text) {
  int row = 1;
  while (row < screen_rows && op.row(row).find(text) == std::string::npos) ++row;
  op.point(row);
  op.enter();
}

/// The cells that begin with a mark.
struct Step {
  std::string_view mark;
  void (*take)(Walk& walk, const std::string& text);  // after the mark
};

constexpr Step steps[] = {
    {"\"", [](Walk& walk, const std::string& text) { walk.op().answer(keys(text)); }},
    {"'", [](Walk& walk, const std::string& text) { walk.op().type(keys(text)); }},
    {"slowly ",
     [](Walk& walk, const std::string& text) {
       for (const char key : keys(text)) {
         walk.op().type({&key, 1});
         walk.op().settle();
       }
     }},
    {"down ", [](Walk& walk, const std::string& times) { walk.op().down(std::stoi(times)); }},
    {"up ", [](Walk& walk, const std::string& times) { walk.op().up(std::stoi(times)); }},
    {"size ",
     [](Walk& walk, const std::string& size) {
       walk.op().resize(std::stoi(size), std::stoi(size.substr(size.find('x') + 1)));
     }},
    {"without ",
     [](Walk& walk, const std::string& text) {
       EXPECT_FALSE(walk.op().shows(english(text))) << text;
     }},
    {"line ", [](Walk& walk, const std::string& text) { choose_line(walk.op(), english(text)); }},
    {"bells ",
     [](Walk& walk, const std::string& times) { EXPECT_EQ(walk.op().bells(), std::stoi(times)); }},
    {"arrow ", [](Walk& walk, const std::string& path) { EXPECT_EQ(arrow_path(walk.op()), path); }},
    {"screen ", [](Walk& walk, const std::string& name) { expect_screen(walk.op(), name); }},
    {"==", [](Walk& walk, const std::string& values) { walk.keep(values, true); }},
    {"=", [](Walk& walk, const std::string& values) { walk.keep(values, false); }},
};

/// A question mark stands for any character.
bool matches(const std::string& text, const std::string& pattern) {
  return std::equal(text.begin(), text.end(), pattern.begin(), pattern.end(),
                    [](char c, char wanted) { return c == wanted || wanted == '?'; });
}

}  // namespace

Walk::Walk(const Folder::Files& files, const Options& options) : options_(options) {
  folder_.emplace(files);
  run();
}

void Walk::run() {
  expected_ = folder_->files();
  kept_.clear();
  alone_ = saves_ = false;
  options_.environment = {{"TZ", "UTC"}, {"PATH", folder_->path()}};  // no text editor but ours
  op_.emplace(*folder_, options_);
}

/// Takes values, and files as "name: text". Removes a file that has no text.
void Walk::set(const Line& line) {
  op_.reset();
  folder_.emplace(demo_with(line[1]));
  for (std::size_t i = 2; i < line.cells.size(); ++i) {
    const std::size_t colon = line[i].find(':');
    const std::string name = line[i].substr(0, colon);
    const std::string text = keys(line[i].substr(colon + 1));
    text.empty() ? folder_->remove(name) : folder_->write(name, text.substr(1) + '\n');
  }
  run();
}

void Walk::go(const Line& line) {
  SCOPED_TRACE("line " + std::to_string(line.number));
  if (line[0] == "set" || line[0] == "again") {
    finish();
    return line[0] == "set" ? set(line) : run();
  }
  go_home();
  for (const std::string& cell : line.cells) take(cell);
}

void Walk::take(const std::string& cell) {
  if (cell.empty()) return;
  const auto* const known = std::find_if(std::begin(steps), std::end(steps), [&](const Step& step) {
    return cell.starts_with(step.mark);
  });
  if (known != std::end(steps)) {
    known->take(*this, cell.substr(known->mark.size()));
  } else if (cell.find_first_not_of("0123456789./") == std::string::npos) {
    op_->open(cell);
  } else {
    op_->expect(english(cell));
  }
  expect_tidy(*op_);
}

void Walk::go_home() {
  while (!op_->shows("Harrier " HARRIER_VERSION)) op_->leave();
  expect_tidy(*op_);
}

void Walk::keep(const std::string& values, bool alone) {
  put_values(expected_, values);
  for (Value& value : read_values(values)) {
    saves_ |= value.file.ends_with(".ini");
    kept_.push_back(std::move(value));
  }
  alone_ |= alone;
}

void Walk::finish() {
  go_home();
  EXPECT_EQ(op_->quit(saves_ ? english("$yes") : ""), saves_ ? 1 : 0);
  EXPECT_TRUE(op_->echo() && op_->canonical() && op_->cursor_visible());
  EXPECT_TRUE(op_->output().ends_with("\n\r\x1b[?25h\x1b[0m"));
  Folder::Files files = folder_->files();
  for (const Value& v : kept_) {
    const std::string found = ini_value(files[v.file], v.section, v.key);
    EXPECT_TRUE(matches(found, ini_value(expected_[v.file], v.section, v.key)))
        << v.file << " " << v.section << "." << v.key << "=" << found << ", not " << v.text;
  }
  if (saves_ && !alone_) return;
  for (const auto& [name, bytes] : files) EXPECT_EQ(bytes, expected_[name]) << name;
  EXPECT_EQ(files.size(), expected_.size());
}

std::string arrow_path(Operator& op) {
  const int first = op.arrow() - 1;
  int row = first + 1;
  std::string path = "1";
  for (const bool down : {true, false}) {
    for (int moves = 0; moves < screen_rows; ++moves) {  // an arrow in a circle never stops
      down ? op.down() : op.up();
      if (op.arrow() == row) break;
      row = op.arrow();
      path += " " + std::to_string(row - first);
    }
  }
  return path;
}
