/* The least that a full-screen menu does at a terminal. It sends the screen in one write, takes all
   waiting keys in one read, and moves the arrow for them in one write. Enter ends it. */

#include <stdio.h>
#include <termios.h>
#include <unistd.h>

enum { first_row = 7, last_row = 13, width_of_move = 22 };

static const char screen[] =
    "\033[?25l\033[40m\033[1;37m\033[2J\033[1;1H"
    "**********************************************************************\n\r"
    "****                                                              ****\n\r"
    "****                             Menu                             ****\n\r"
    "****                                                              ****\n\r"
    "**********************************************************************\n\r"
    "\n\r"
    "  --> 1 - one\n\r"
    "      2 - two\n\r"
    "      3 - three\n\r"
    "      4 - four\n\r"
    "      5 - five\n\r"
    "      6 - six\n\r"
    "      7 - seven\n\r"
    "\n\r"
    "**********************************************************************\n\r";

static char* append_move(char* out, int from, int to) {
  return out + sprintf(out, "\033[%02d;03H   \033[%02d;03H-->", from, to);
}

int main(void) {
  static const char parting[] = "\033[0m\033[?25h\n";
  static char moves[1024 * width_of_move];
  struct termios found;
  struct termios single_key;
  int row = first_row;

  if (tcgetattr(STDIN_FILENO, &found) != 0) return 1;
  single_key = found;
  single_key.c_lflag &= ~(tcflag_t)(ICANON | ECHO);
  tcsetattr(STDIN_FILENO, TCSADRAIN, &single_key);
  if (write(STDOUT_FILENO, screen, sizeof screen - 1) < 0) return 1;
  for (int leaving = 0; !leaving;) {
    char keys[1024];
    char* end = moves;
    const ssize_t count = read(STDIN_FILENO, keys, sizeof keys);
    if (count <= 0) break;
    for (ssize_t i = 0; i < count; ++i) {
      const int to = keys[i] == 'A' ? row - 1 : keys[i] == 'B' ? row + 1 : row;
      if (keys[i] == '\n') leaving = 1;
      if (to == row || to < first_row || to > last_row) continue;
      end = append_move(end, row, to);
      row = to;
    }
    if (end != moves && write(STDOUT_FILENO, moves, (size_t)(end - moves)) < 0) return 1;
  }
  if (write(STDOUT_FILENO, parting, sizeof parting - 1) < 0) return 1;
  tcsetattr(STDIN_FILENO, TCSADRAIN, &found);
  return 0;
}
