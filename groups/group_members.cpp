#include "groups/group_members.h"

#include "kit/screens.h"
#include "lang/lang_text.h"
#include "ups/ups_line.h"
#include "ups/ups_slot.h"

namespace {

/// A member: the slot of a UPS plus one, or 0.
std::uint16_t& member_of(const Subject& s) { return INI1.group[s.group].UPS[s.member]; }

// --- The choice of a UPS ------------------------------------------------------------------------

void print_slot(const Subject&, int item) { print_ups_line(item - 1, LinkValues::saved); }

/// A free slot is no choice: the member stays.
void choose_slot(const Subject& s, int item) {
  if (ups_in_use(item - 1)) member_of(s) = static_cast<std::uint16_t>(item);
}

void choose_none(const Subject& s) { member_of(s) = 0; }

constexpr Row ups_rows[] = {
    rule,
    open("17", text::delete_entry, choose_none).leaves(),
};

constexpr Screen ups_screen{
    .start_row = compact,
    .title = text::choose_ups,
    .list = {.count = ups_count, .line = print_slot, .enter = choose_slot, .leaves = true},
    .rows = ups_rows};

// --- The members --------------------------------------------------------------------------------

/// A member whose UPS has lost its name shows an empty name. A place without a member shows text
/// 335.
void print_member(const Subject& s, int item) {
  const int number = INI1.group[s.group].UPS[item - 1];
  if (number == 0)
    print_value(shown_text(text::unused));
  else if (number <= ups_count)
    print_value(INI1.ups[number - 1].Name.view());
}

void open_member(const Subject& s, int item) {
  run_screen(ups_screen, {.group = s.group, .member = item - 1});
}

constexpr Screen member_screen{
    .start_row = 2,
    .title = text::group_members,
    .list = {.count = member_count, .line = print_member, .enter = open_member},
    .rows = only_back};

}  // namespace

void print_gr_ups(int selected, int group) {
  print_screen(member_screen, {.group = group}, selected);
}

void gr_ups(int group) { run_screen(member_screen, {.group = group}); }
