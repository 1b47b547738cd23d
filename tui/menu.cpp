#include "tui/menu.h"

#include "tui/terminal.h"

namespace {

int next_item(const Menu& menu, int item, int direction) {
  const int last = menu.last();
  int to = item + direction;
  while (to >= 1 && to <= last && !menu.selectable(to)) to += direction;
  if (to < 1 || to > last) return item;
  return menu.step ? menu.step(item, to) : to;
}

}  // namespace

void run_menu(const Menu& menu, int item) {
  menu.draw(item);
  for (;;) {
    const Key key = read_key();
    switch (key) {
      case Key::enter:
        item = menu.enter(item);
        if (item == 0) return;
        menu.draw(item);
        break;
      case Key::up:
      case Key::down: {
        const int to = next_item(menu, item, key == Key::down ? 1 : -1);
        if (to != item) menu.move(item, to);
        item = to;
        break;
      }
      case Key::redraw:
        menu.draw(item);
        break;
      case Key::other:
        break;
    }
  }
}
