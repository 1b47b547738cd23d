#include "tests/golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "tests/tables.h"
#include "tui/format.h"

namespace {

/// The largest screen of the program. A terminal may have more rows.
constexpr int rows = 24;
constexpr int picture_cols = 80;

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
  for (int col = 1; col <= op.cols(); ++col) {
    const Cell cell = op.cell(row, col);
    if (cell.text == " " && cell.look.background <= 0) continue;
    if (runs.empty() || runs.back().look != cell.look) runs.push_back({cell.look, col, col, ""});
    Run& run = runs.back();
    run.text.append(static_cast<std::size_t>(col - run.end), ' ').append(cell.text);
    run.end = col + 1;
  }
  return runs;
}

struct Known {
  Look look;
  char letter;         // in a text file
  const char* colour;  // in a picture, as a terminal of 16 colours shows it
};

/// The last two come from the text editor of a walk.
constexpr Known looks[] = {{{7, 0, true}, 'w', "fff"},    {{7, 0, false}, 'd', "aaa"},
                           {{6, 0, true}, 'c', "5ff"},    {{2, 0, true}, 'g', "5f5"},
                           {{1, 0, true}, 'r', "f55"},    {{1, 0, false}, 'x', "a00"},
                           {{-1, -1, false}, 'p', "aaa"}, {{-1, 4, false}, 'b', "aaa"}};

const Known& known(const Look& look) {
  for (const Known& candidate : looks) {
    if (candidate.look == look) return candidate;
  }
  throw std::runtime_error("no letter for colour " + std::to_string(look.foreground));
}

std::string as_text(const std::vector<Row>& screen) {
  std::string text;
  for (const Row& row : screen) {
    std::string line;
    std::string characters;
    int at = 1;
    for (const Run& run : row) {
      line += known(run.look).letter + std::to_string(run.end - at) + " ";
      characters.append(static_cast<std::size_t>(run.first - at), ' ').append(run.text);
      at = run.end;
    }
    line.resize(line.size() > 16 ? 32 : 16, ' ');  // the characters of rows alike stay aligned
    text.append(line).append("|").append(characters).append("\n");
  }
  text.erase(text.find_last_not_of(" |\n") + 1);
  return text + "\n";
}

/// Blanks must not break, because viewers differ in how many they keep.
std::string escaped(const std::string& text) {
  return replaced(text, {{"&", "&amp;"}, {"<", "&lt;"}, {" ", "\u00a0"}});
}

/// Scalable Vector Graphics 1.1 (W3C). Lengths are pixels. Each run has the width of its cells.
std::string as_picture(const std::vector<Row>& screen) {
  constexpr int cell_width = 10;
  constexpr int cell_height = 20;
  constexpr int margin = 14;
  constexpr int baseline = 15;  // of a line of text, below the top of its cells
  constexpr int width = picture_cols * cell_width + 2 * margin;
  constexpr int height = rows * cell_height + 2 * margin;
  std::string svg = format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" width=\"%d\" height=\"%d\" "
      "font-family=\"DejaVu Sans Mono, Menlo, Consolas, monospace\" font-size=\"16\">\n"
      "<rect width=\"100%%\" height=\"100%%\" rx=\"8\" fill=\"#000\"/>\n",
      width, height, width, height);
  int y = margin + baseline;
  for (const Row& row : screen) {
    for (const Run& run : row) {
      svg += format("<text x=\"%d\" y=\"%d\" textLength=\"%d\" fill=\"#%s\">%s</text>\n",
                    margin + (run.first - 1) * cell_width, y, (run.end - run.first) * cell_width,
                    known(run.look).colour, escaped(run.text).c_str());
    }
    y += cell_height;
  }
  return svg + "</svg>\n";
}

}  // namespace

void expect_drawn(const std::string& file, const std::string& drawn) {
  if (drawing()) {
    std::ofstream(file) << drawn;
  } else {
    EXPECT_EQ(drawn, read_file(file)) << file << ": ./test --draw draws it anew";
  }
}

bool drawing() { return std::getenv("HARRIER_DRAW") != nullptr; }

void expect_screen(Operator& op, const std::string& name) {
  op.settle();
  std::vector<Row> screen;
  for (int row = 1; row <= rows; ++row) screen.push_back(capture_row(op, row));
  expect_drawn(source_dir() + "/tests/data/screens/" + name + ".txt", as_text(screen));
  const std::string picture = source_dir() + "/docs/pictures/" + name + ".svg";
  if (std::filesystem::exists(picture)) expect_drawn(picture, as_picture(screen));
}
