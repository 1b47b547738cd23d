#include "tests/picture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace {

constexpr int rows = 24;
constexpr int cols = 80;

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

std::string escaped(const std::string& character) {
  return character == "&" ? "&amp;" : character == "<" ? "&lt;" : character;
}

/// The cells from `col` on that look alike, as one piece of text of exactly their width, without
/// the blanks around it. Moves `col` behind all of them. Blanks in between must not break: viewers
/// differ in how many they keep.
std::string run_of_cells(const Operator& op, int row, int& col) {
  const Look look = op.cell(row, col).look;
  int start = 0;
  int end = 0;
  std::string text;
  std::string blanks;
  for (Cell cell; col <= cols && (cell = op.cell(row, col)).look == look; ++col) {
    if (cell.text == " ") {
      blanks += "\u00a0";
      continue;
    }
    if (text.empty()) start = col;
    text += (text.empty() ? "" : blanks) + escaped(cell.text);
    blanks.clear();
    end = col + 1;
  }
  if (text.empty()) return "";
  return "<text x=\"" + std::to_string(margin + (start - 1) * cell_width) + "\" y=\"" +
         std::to_string(margin + (row - 1) * cell_height + baseline) + "\" textLength=\"" +
         std::to_string((end - start) * cell_width) + "\" fill=\"#" + colour(look) + "\">" + text +
         "</text>\n";
}

/// The screen as a picture: Scalable Vector Graphics 1.1 (W3C).
std::string picture(Operator& op) {
  op.settle();
  const std::string width = std::to_string(cols * cell_width + 2 * margin);
  const std::string height = std::to_string(rows * cell_height + 2 * margin);
  std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " + width + " " +
                    height + "\" width=\"" + width + "\" height=\"" + height +
                    "\" font-family=\"DejaVu Sans Mono, Menlo, Consolas, monospace\" "
                    "font-size=\"16\">\n"
                    "<rect width=\"100%\" height=\"100%\" rx=\"8\" fill=\"#000\"/>\n";
  for (int row = 1; row <= rows; ++row) {
    for (int col = 1; col <= cols;) svg += run_of_cells(op, row, col);
  }
  return svg + "</svg>\n";
}

}  // namespace

void expect_picture(Operator& op, const std::string& name) {
  const std::string drawn = picture(op);
  const std::string file = source_dir() + "/docs/pictures/" + name + ".svg";
  if (std::getenv("HARRIER_PICTURES") != nullptr) std::ofstream(file) << drawn;
  EXPECT_TRUE(read_file(file) == drawn) << name << ": draw it anew by ./test --pictures";
}
