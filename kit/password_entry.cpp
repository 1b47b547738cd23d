#include "kit/password_entry.h"

#include <algorithm>
#include <cstring>

#include "config/password.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "tui/screen.h"
#include "tui/terminal.h"

int enter_password(std::uint16_t& password, std::size_t size, int item) {
  constexpr int start_row = 9;
  char typed[256] = {};
  print_frame(start_row, shown_text(text::enter_password));
  print_escapeseq(escape::show_cursor);
  ask_line(typed, std::min(size, sizeof typed), shown_text(text::new_value).c_str());
  const bool any = typed[0] != '\0';
  if (!any && end_of_file_typed()) return item;
  password = CalculatePassword(typed);
  explicit_bzero(typed, sizeof typed);
  return any ? item : item - 1;
}
