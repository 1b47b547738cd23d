#pragma once

#include <functional>

/// A menu as the loop sees it: items that are numbered by the lines of the screen, rule lines
/// included, from 1 on, and an arrow that stands on one of them.
struct Menu {
  std::function<int()> last;               // the number of the last item
  std::function<bool(int)> selectable;     // may the arrow rest on this item?
  std::function<void(int)> draw;           // the whole screen, the arrow on this item
  std::function<void(int, int)> move;      // the arrow alone, from one item to another
  std::function<int(int)> enter;           // acts; the item the arrow is on then, 0 to leave
  std::function<int(int, int)> step = {};  // where an arrow key really leads: from, to
};

/// Runs a menu with the arrow on `item` until an item leaves it. Only Enter and the two arrow keys
/// do anything. Down and Up go to the next item that may be chosen, and nowhere beyond the last
/// one. The screen is drawn again after every action, and whenever a signal asks for it.
void run_menu(const Menu& menu, int item = 1);
