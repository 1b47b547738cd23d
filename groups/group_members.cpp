#include "groups/group_members.h"

#include "lang/lang_text.h"
#include "menus/screen_kit.h"
#include "ups/ups_line.h"

namespace {

/// A member: the slot of a UPS plus one, or 0.
std::uint16_t& member_of(const Subject& s) { return INI1.group[s.index].UPS[s.part]; }

// --- The choice of a UPS ------------------------------------------------------------------------

void print_slot(const Subject&, int item) { print_ups_line(item, LinkValues::saved); }

/// A free slot is no choice: the member stays.
int choose_slot(const Subject& s, int item) {
  if (ups_in_use(item - 1)) member_of(s) = static_cast<std::uint16_t>(item);
  return 0;
}

int choose_none(const Subject& s, int) {
  member_of(s) = 0;
  return 0;
}

const Row ups_rows[] = {
    {},
    {.act = Act::open, .lead = "      17 - ", .label = text::delete_entry, .enter = choose_none},
};

const Screen ups_screen{.start_row = compact,
                        .title = text::choose_ups,
                        .rows = ups_rows,
                        .listed = ups_count,
                        .list_line = print_slot,
                        .list_enter = choose_slot};

// --- The members --------------------------------------------------------------------------------

/// A member whose UPS has lost its name shows no name, unlike a place without a member.
void print_member(const Subject& s, int item) {
  print_list_number(item, short_number_columns);
  const int number = INI1.group[s.index].UPS[item - 1];
  if (number == 0)
    print_value(LangText[text::unused], short_number_columns);
  else if (number <= ups_count)
    print_value(INI1.ups[number - 1].Name.view(), short_number_columns);
}

int open_member(const Subject& s, int item) {
  run_screen(ups_screen, {.index = s.index, .part = item - 1});
  return item;
}

const Row member_rows[] = {
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen member_screen{.start_row = 2,
                           .title = text::group_members,
                           .rows = member_rows,
                           .listed = member_count,
                           .list_line = print_member,
                           .list_enter = open_member};

}  // namespace

void print_gr_ups(int selected, int group) {
  print_screen(member_screen, {.index = group}, selected);
}

void gr_ups(int group) { run_screen(member_screen, {.index = group}); }
