#include "groups/group_conditions.h"

#include "kit/screens.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "tui/format.h"

namespace {

// Types of conditions. Those about the redundancy of the group take a number of UPSs as their
// source.
constexpr unsigned type_redundancy_lost = 23;
constexpr unsigned type_redundancy_restored = 24;

// Sources: a UPS of the group by its number, 100 and a number of UPSs, any UPS, or all.
constexpr int count_base = 100;
constexpr int source_any = 254;
constexpr int source_all = 255;

GroupEvent& event_of(const Subject& s) { return INI1.group[s.group].events[s.event]; }

std::uint16_t& type_of(const Subject& s) { return event_of(s).Type[s.condition]; }

std::uint16_t& source_of(const Subject& s) { return event_of(s).Priority[s.condition]; }

bool about_redundancy(unsigned type) {
  return type == type_redundancy_lost || type == type_redundancy_restored;
}

/// Empty for a type whose text would be outside the table.
std::string type_name(unsigned type) {
  if (type == 0) return shown_text(text::unused);
  if (type == type_redundancy_lost) return shown_text(text::redundancy_lost);
  if (type == type_redundancy_restored) return shown_text(text::redundancy_restored);
  const unsigned number = text::condition_base + type;
  return number < text_count ? shown_text(static_cast<int>(number)) : "";
}

// --- The choice of a type: two pages ------------------------------------------------------------

constexpr int first_page_types = 11;
constexpr int second_page_types = 13;

void print_type(const Subject& s, int item) {
  print_cut(type_name(static_cast<unsigned>(s.first + item)));
}

void choose_type(const Subject& s, int item) {
  type_of(s) = static_cast<std::uint16_t>(s.first + item);
}

/// The back item counts as a type too: leaving the first page stores 15, leaving the second page
/// stores 26. An operator who only looks has to choose the old type again.
int choose_item_number(const Subject& s, int item) {
  choose_type(s, item);
  return 0;
}

constexpr Row second_page_rows[] = {
    rule,
    open("0", text::back, choose_item_number),
};
constexpr Screen second_page{
    .start_row = 0,
    .title = text::condition_type,
    .list = {.count = second_page_types, .line = print_type, .enter = choose_type, .leaves = true},
    .rows = second_page_rows};

void show_second_page(const Subject& s) {
  Subject page = s;
  page.first = first_page_types;
  run_screen(second_page, page);
}

constexpr Row first_page_rows[] = {
    rule,
    open("12", text::show_more, show_second_page).leaves(),
    rule,
    open("0", text::back, choose_item_number),
};
constexpr Screen first_page{
    .start_row = 0,
    .title = text::condition_type,
    .list = {.count = first_page_types, .line = print_type, .enter = choose_type, .leaves = true},
    .rows = first_page_rows};

// --- The choice of a source ---------------------------------------------------------------------

void ask_source_number(const Subject& s, text::Id label, int current, int base = 0) {
  const unsigned number = edit_number(label, static_cast<unsigned>(current), 0, member_count);
  source_of(s) = static_cast<std::uint16_t>(number + static_cast<unsigned>(base));
}

/// Asks for a number and stores it plus `base`. The present number is shown less 100 if it is above
/// 100, so a source of 100 is shown as 100. Enter alone takes the shown number.
template <int base>
void store_number(const Subject& s) {
  const int source = source_of(s);
  ask_source_number(s, text::source_number, source > count_base ? source - count_base : source,
                    base);
}

template <int source>
void store_source(const Subject& s) {
  source_of(s) = source;
}

constexpr Row source_rows[] = {
    open("1", text::source_member, store_number<0>).leaves(),
    open("2", text::source_count, store_number<count_base>).leaves(),
    open("3", text::source_any, store_source<source_any>).leaves(),
    open("4", text::source_all, store_source<source_all>).leaves(),
};
constexpr Screen source_screen{
    .start_row = 2, .title = text::condition_source, .rows = source_rows};

// --- One condition ------------------------------------------------------------------------------

/// From type 22 on, the screen shows the bare number, although type 22 has the choice of a source.
std::string source_text(const Subject& s) {
  constexpr unsigned last_type_with_text = 21;
  const int source = source_of(s);
  if (type_of(s) > last_type_with_text || source > source_all) return format("%d", source);
  if (source == source_all) return shown_text(text::source_all);
  if (source == source_any) return shown_text(text::source_any);
  if (source < count_base)
    return format("%s [%d]", shown_text(text::source_member).c_str(), source);
  return format("%s [%d]", shown_text(text::source_count).c_str(), source - count_base);
}

/// The conditions after the deleted one move up, each with its source. The last place loses only
/// its type. Its source is still there when it gets a new type.
void delete_condition(const Subject& s) {
  GroupEvent& event = event_of(s);
  for (int i = s.condition; i + 1 < condition_count; ++i) {
    event.Type[i] = event.Type[i + 1];
    event.Priority[i] = event.Priority[i + 1];
  }
  event.Type[condition_count - 1] = 0;
}

void edit_source(const Subject& s) {
  if (type_of(s) == 0) return;
  if (about_redundancy(type_of(s))) {
    ask_source_number(s, text::redundancy_level, source_of(s));
  } else {
    run_screen(source_screen, s);
  }
}

std::string type(const Subject& s) { return type_name(type_of(s)); }

constexpr Row condition_rows[] = {
    open("1", text::delete_entry, delete_condition).leaves(),
    custom("2", text::condition_type, type, &first_page),
    custom("3", text::condition_source, source_text, edit_source),
    rule,
    back,
};
constexpr Screen condition_screen{
    .start_row = 2, .title = text::group_event, .rows = condition_rows};

// --- The list of the conditions -----------------------------------------------------------------

void print_condition(const Subject& s, int item) {
  std::string line;
  fill_gr_event_name(s.group, s.event, item - 1, line);
  print_value(line);
}

void open_condition(const Subject& s, int item) { group_job_param2(s.group, s.event, item - 1); }

constexpr Screen list_screen{
    .start_row = 2,
    .title = text::conditions,
    .list = {.count = condition_count, .line = print_condition, .enter = open_condition},
    .rows = only_back};

}  // namespace

void print_group_param_new(int selected, int group, int event) {
  print_screen(list_screen, {.group = group, .event = event}, selected);
}

void group_job_param_new(int group, int event) {
  run_screen(list_screen, {.group = group, .event = event});
}

void fill_gr_event_name(int group, int event, int condition, std::string& text) {
  const Subject s{.group = group, .event = event, .condition = condition};
  text = type_name(type_of(s));
  if (type_of(s) == 0) return;
  const int source = source_of(s);
  const bool is_count =
      !about_redundancy(type_of(s)) && source >= count_base && source < source_any;
  text += format(" - [%d]", is_count ? source - count_base : source);
}

void print_group_job_param2(int selected, int group, int event, int condition) {
  print_screen(condition_screen, {.group = group, .event = event, .condition = condition},
               selected);
}

void group_job_param2(int group, int event, int condition) {
  run_screen(condition_screen, {.group = group, .event = event, .condition = condition});
}

void print_group_job_event(int selected, int first, int last) {
  Screen page = first == 1 ? first_page : second_page;
  page.list.count = last - first + 1;
  print_screen(page, {.first = first - 1}, selected);
}
