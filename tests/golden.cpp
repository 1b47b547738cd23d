#include "tests/golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <vector>

namespace {

/// The largest screen of the program. A terminal may have more rows and columns.
constexpr int rows = 24;
constexpr int cols = 80;

/// The characters of a row from column `first` up to and without column `end`. They look alike,
/// except that the look of a blank in between may be any: nobody sees it.
struct Run {
  Look look;
  int first;
  int end;
  std::string text;
};

using Row = std::vector<Run>;

Row capture_row(const Operator& op, int row) {
  Row runs;
  for (int col = 1; col <= cols; ++col) {
    const Cell cell = op.cell(row, col);
    if (cell.text == " " && cell.look.background <= 0) continue;
    if (runs.empty() || runs.back().look != cell.look) runs.push_back({cell.look, col, col, ""});
    Run& run = runs.back();
    run.text.append(static_cast<std::size_t>(col - run.end), ' ').append(cell.text);
    run.end = col + 1;
  }
  return runs;
}

/// The program writes in white, dimmed white, cyan, green, red and dimmed red. Plain and blue come
/// from the text editor of a walk.
char letter_of(const Look& look) {
  constexpr std::pair<char, Look> letters[] = {
      {'w', {7, 0, true}}, {'d', {7, 0, false}}, {'c', {6, 0, true}},    {'g', {2, 0, true}},
      {'r', {1, 0, true}}, {'x', {1, 0, false}}, {'p', {-1, -1, false}}, {'b', {-1, 4, false}}};
  for (const auto& [letter, known] : letters) {
    if (look == known) return letter;
  }
  ADD_FAILURE() << "no letter for colour " << look.foreground << " on " << look.background;
  return '?';
}

std::string as_text(const std::vector<Row>& screen) {
  // The characters of all rows begin in the same column, which seldom changes with a wording.
  constexpr std::size_t column_step = 16;
  std::size_t column = column_step;
  std::vector<std::pair<std::string, std::string>> lines;
  for (const Row& row : screen) {
    auto& [looks, characters] = lines.emplace_back();
    int at = 1;
    for (const Run& run : row) {
      looks += letter_of(run.look) + std::to_string(run.end - at) + " ";
      characters.append(static_cast<std::size_t>(run.first - at), ' ').append(run.text);
      at = run.end;
    }
    while (column < looks.size()) column += column_step;
  }
  std::string text;
  for (auto& [looks, characters] : lines) {
    looks.resize(column, ' ');
    text.append(looks).append("|").append(characters).append("\n");
  }
  text.erase(text.find_last_not_of(" |\n") + 1);
  return text + "\n";
}

/// Pixels.
constexpr int cell_width = 10;
constexpr int cell_height = 20;
constexpr int margin = 14;
constexpr int baseline = 15;  // of a line of text, below the top of its cells

/// As a terminal of 16 colours shows it.
const char* colour(const Look& look) {
  static const char* const dark[] = {"000", "a00", "0a0", "a50", "00a", "a0a", "0aa", "aaa"};
  static const char* const bright[] = {"555", "f55", "5f5", "ff5", "55f", "f5f", "5ff", "fff"};
  return look.foreground < 0 ? dark[7] : (look.bold ? bright : dark)[look.foreground];
}

/// Blanks must not break, because viewers differ in how many they keep.
std::string escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == ' ') {
      escaped += "\u00a0";
    } else if (c == '&' || c == '<') {
      escaped += c == '&' ? "&amp;" : "&lt;";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

/// Scalable Vector Graphics 1.1 (W3C). Each run has exactly the width of its cells.
std::string as_picture(const std::vector<Row>& screen) {
  const std::string width = std::to_string(cols * cell_width + 2 * margin);
  const std::string height = std::to_string(rows * cell_height + 2 * margin);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + width + " " +
                    height + "\" width=\"" + width + "\" height=\"" + height +
                    "\" font-family=\"DejaVu Sans Mono, Menlo, Consolas, monospace\" "
                    "font-size=\"16\">\n"
                    "<rect width=\"100%\" height=\"100%\" rx=\"8\" fill=\"#000\"/>\n";
  int y = margin + baseline;
  for (const Row& row : screen) {
    for (const Run& run : row) {
      svg += "<text x=\"" + std::to_string(margin + (run.first - 1) * cell_width) + "\" y=\"" +
             std::to_string(y) + "\" textLength=\"" +
             std::to_string((run.end - run.first) * cell_width) + "\" fill=\"#" + colour(run.look) +
             "\">" + escaped(run.text) + "</text>\n";
    }
    y += cell_height;
  }
  return svg + "</svg>\n";
}

void compare(const std::string& file, const std::string& drawn) {
  if (drawing()) {
    std::ofstream(file) << drawn;
  } else {
    EXPECT_EQ(drawn, read_file(file)) << file << ": ./test --draw draws it anew";
  }
}

}  // namespace

bool drawing() { return std::getenv("HARRIER_DRAW") != nullptr; }

void expect_screen(Operator& op, const std::string& name) {
  op.settle();
  std::vector<Row> screen;
  for (int row = 1; row <= rows; ++row) screen.push_back(capture_row(op, row));
  compare(source_dir() + "/tests/data/screens/" + name + ".txt", as_text(screen));
  const std::string picture = source_dir() + "/docs/pictures/" + name + ".svg";
  if (std::filesystem::exists(picture)) compare(picture, as_picture(screen));
}
