#pragma once

#include <functional>

/// A menu as the loop sees it. Every line of its list is an item, rule lines included. Items are
/// numbered from 1, and an arrow stands on one of them.
struct Menu {
  std::function<int()> last;               // the number of the last item
  std::function<bool(int)> selectable;     // may the arrow rest on this item?
  std::function<void(int)> draw;           // the whole screen, the arrow on this item
  std::function<void(int, int)> move;      // the arrow alone, from one item to another
  std::function<int(int)> enter;           // acts; returns the next place of the arrow, 0 to leave
  std::function<int(int, int)> step = {};  // from, to: returns where the arrow goes instead of `to`
};

/// Runs a menu, with the arrow on `item` at first, until `enter` returns 0. Only Enter, Up and Down
/// do anything. Up and Down go to the next selectable item, or stay where there is none. Draws the
/// screen again after every action, and whenever a signal asks for it.
void run_menu(const Menu& menu, int item = 1);
