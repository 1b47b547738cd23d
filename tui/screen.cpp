#include "tui/screen.h"

#include <algorithm>

#include "tui/columns.h"
#include "tui/terminal.h"

namespace {

constexpr int widest_frame = 70;
constexpr char border[] = "****";
constexpr int borders_width = 8;

// From this width on `center` leaves a text as it is. All callers have shorter lines.
constexpr int widest_center = 200;

void repeat(std::string& text, std::string_view fill, int times) {
  for (int i = 0; i < times; ++i) text += fill;
}

int frame_width() { return std::clamp(line_columns(), borders_width, widest_frame); }

int scrolled = 0;  // rows that the current screen has scrolled up, in a terminal with too few rows

void put_mark(const char* mark, int item, int column, int base) {
  const int row = row_in_sight(item + base);
  if (row < 1) return;
  cursor_gotopos(row, column, 0);
  put(mark);
}

}  // namespace

const signed char seq_escape[10][11] = {
    {4, '\033', '[', '2', 'J'},
    {6, '\033', '[', '?', '2', '5', 'l'},
    {6, '\033', '[', '?', '2', '5', 'h'},
    {5, '\033', '[', '4', '0', 'm'},
    {7, '\033', '[', '1', ';', '3', '7', 'm'},
    {10, '\033', '[', '0', ';', '3', '7', ';', '4', '0', 'm'},
    {7, '\033', '[', '1', ';', '3', '6', 'm'},
    {7, '\033', '[', '1', ';', '3', '2', 'm'},
    {7, '\033', '[', '1', ';', '3', '1', 'm'},
    {10, '\033', '[', '0', ';', '3', '1', ';', '4', '0', 'm'},
};

void print_escapeseq(int index) {
  if (index == escape::clear_screen) begin_screen();
  const signed char* entry = seq_escape[index];
  put({reinterpret_cast<const char*>(entry) + 1, static_cast<std::size_t>(entry[0])});
}

void cursor_gotopos(int row, int column, int row_offset) {
  row += row_offset;
  const auto digit = [](int number) { return static_cast<char>('0' + number); };
  const char sequence[] = {
      '\033', '[', digit(row / 10), digit(row % 10), ';', digit(column / 10), digit(column % 10),
      'H'};
  put({sequence, sizeof sequence});
}

void print_line(int kind) {
  const auto width = static_cast<std::size_t>(frame_width());
  std::string line = kind == 4 ? "" : "\n\r";
  if (kind == 3) {
    line += border + std::string(width - borders_width, ' ') + border;
  } else if (kind >= 0 && kind <= 4) {
    line.append(width, kind == 0 ? '-' : kind == 2 ? '#' : '*');
  }
  put(line);
}

void print_center(std::string_view text) {
  const int width = frame_width() - borders_width;
  const std::string shown = cut_marked(text, width);
  const int left = width - columns(shown);
  std::string line = "\n\r";
  line.append(border).append(static_cast<std::size_t>(left / 2), ' ').append(shown);
  line.append(static_cast<std::size_t>(left - left / 2), ' ').append(border);
  put(line);
}

void print_item(std::string_view text) {
  put("\n\r" + cut_marked("      " + std::string(text), line_columns()));
}

std::string& center(std::string& text, int width, std::string_view fill) {
  if (width >= widest_center) return text;
  std::string centred;
  repeat(centred, fill, (width - columns(text)) / 2);
  centred += text;
  repeat(centred, fill, width - columns(centred));
  return text = centred;
}

std::string& dopln(std::string& text, int width, std::string_view fill) {
  repeat(text, fill, width - columns(text));
  return text;
}

void beep() { put("\a"); }

void print_frame(int start_row, std::string_view title) {
  print_escapeseq(escape::clear_screen);
  if (start_row == compact) {
    cursor_gotopos(1, 0, 0);
    print_line(4);
    print_center(title);
    print_line(1);
    return;
  }
  cursor_gotopos(start_row, 0, 0);
  print_line(1);
  print_line(3);
  print_center(title);
  print_line(3);
  print_line(1);
}

int arrow_base(int start_row) {
  if (start_row == compact) return 3;
  // A terminal reads row 0 as row 1.
  return start_row == 0 ? 6 : start_row + 5;
}

void print_frame_end(int start_row, int last_row) {
  if (start_row != compact) put("\n\r");
  print_line(1);
  const int end = start_row == compact ? last_row + 1 : last_row + 2;
  scrolled = std::max(0, end - terminal_rows());
}

int row_in_sight(int row) { return row - scrolled; }

void print_arrow(int item, int column, int base) { put_mark("-->", item, column, base); }

void move_arrow(int from, int to, int column, int base) {
  put_mark("   ", from, column, base);
  print_arrow(to, column, base);
}
