#include "groups/group_conditions.h"

#include "lang/lang_text.h"
#include "menus/screen_kit.h"

namespace {

// Types of conditions. Those about the redundancy of the group take a number of UPSs as their
// source.
constexpr unsigned type_redundancy_lost = 23;
constexpr unsigned type_redundancy_restored = 24;

// Sources: a UPS of the group by its number, 100 and a number of UPSs, any UPS, or all.
constexpr int count_base = 100;
constexpr int source_any = 254;
constexpr int source_all = 255;

GroupEvent& event_of(const Subject& s) { return INI1.group[s.index].events[s.event]; }

std::uint16_t& type_of(const Subject& s) { return event_of(s).Type[s.part]; }

std::uint16_t& source_of(const Subject& s) { return event_of(s).Priority[s.part]; }

bool about_redundancy(unsigned type) {
  return type == type_redundancy_lost || type == type_redundancy_restored;
}

/// Empty for a type whose text would lie outside the table.
std::string type_name(unsigned type) {
  if (type == 0) return LangText[text::unused];
  if (type == type_redundancy_lost) return LangText[text::redundancy_lost];
  if (type == type_redundancy_restored) return LangText[text::redundancy_restored];
  const unsigned number = text::condition_base + type;
  return number < text_count ? LangText[number] : "";
}

// --- The choice of a type -----------------------------------------------------------------------

constexpr int first_page_types = 11;
constexpr int second_page_types = 13;

template <int types_before>
void print_type(const Subject&, int item) {
  print_list_number(types_before + item);
  print_cut(type_name(static_cast<unsigned>(types_before + item)), number_columns);
}

/// The back item counts as a type too: leaving the first page without a choice stores 15, leaving
/// the second one 26. Whoever only wanted to look has to choose the old type again.
template <int types_before>
int store_type(const Subject& s, int item) {
  type_of(s) = static_cast<std::uint16_t>(types_before + item);
  return 0;
}

const Row second_page_rows[] = {
    {},
    {.act = Act::open,
     .lead = "       0 - ",
     .label = text::back,
     .enter = store_type<first_page_types>},
};
const Screen second_page{.start_row = 0,
                         .title = text::condition_type,
                         .rows = second_page_rows,
                         .listed = second_page_types,
                         .list_line = print_type<first_page_types>,
                         .list_enter = store_type<first_page_types>};

const Row first_page_rows[] = {
    {},
    {.act = Act::open,
     .lead = "      12 - ",
     .label = text::show_more,
     .enter =
         [](const Subject& s, int) {
           run_screen(second_page, s);
           return 0;
         }},
    {},
    {.act = Act::open, .lead = "       0 - ", .label = text::back, .enter = store_type<0>},
};
const Screen first_page{.start_row = 0,
                        .title = text::condition_type,
                        .rows = first_page_rows,
                        .listed = first_page_types,
                        .list_line = print_type<0>,
                        .list_enter = store_type<0>};

// --- The choice of a source ---------------------------------------------------------------------

void ask_source_number(const Subject& s, text::Id label, int current, int base = 0) {
  const unsigned number = edit_number(label, static_cast<unsigned>(current), 0, member_count);
  source_of(s) = static_cast<std::uint16_t>(number + static_cast<unsigned>(base));
}

/// Asks for a number and stores it, `base` added. The number shown, which Enter alone takes, is the
/// stored one less 100 above 100, and whole up to there: a source of 100 is shown as 100.
template <int base>
int store_number(const Subject& s, int) {
  const int source = source_of(s);
  ask_source_number(s, text::source_number, source > count_base ? source - count_base : source,
                    base);
  return 0;
}

template <int source>
int store_source(const Subject& s, int) {
  source_of(s) = source;
  return 0;
}

const Row source_rows[] = {
    {.act = Act::open,
     .lead = "      1 - ",
     .label = text::source_member,
     .enter = store_number<0>},
    {.act = Act::open,
     .lead = "      2 - ",
     .label = text::source_count,
     .enter = store_number<count_base>},
    {.act = Act::open,
     .lead = "      3 - ",
     .label = text::source_any,
     .enter = store_source<source_any>},
    {.act = Act::open,
     .lead = "      4 - ",
     .label = text::source_all,
     .enter = store_source<source_all>},
};
const Screen source_screen{.start_row = 2, .title = text::condition_source, .rows = source_rows};

// --- One condition ------------------------------------------------------------------------------

/// From type 22 on, which has the choice of a source nevertheless, the bare number is shown.
std::string source_text(const Subject& s) {
  constexpr unsigned last_type_with_text = 21;
  const int source = source_of(s);
  if (type_of(s) > last_type_with_text || source > source_all) return format("%d", source);
  if (source == source_all) return LangText[text::source_all];
  if (source == source_any) return LangText[text::source_any];
  if (source < count_base) return format("%s [%d]", LangText[text::source_member], source);
  return format("%s [%d]", LangText[text::source_count], source - count_base);
}

/// The conditions behind the deleted one move up, each with its source. The last one loses
/// its type only: its source is still there when it is given a new one.
int delete_condition(const Subject& s, int) {
  GroupEvent& event = event_of(s);
  for (int i = s.part; i + 1 < condition_count; ++i) {
    event.Type[i] = event.Type[i + 1];
    event.Priority[i] = event.Priority[i + 1];
  }
  event.Type[condition_count - 1] = 0;
  return 0;
}

void edit_source(const Subject& s) {
  if (type_of(s) == 0) return;
  if (about_redundancy(type_of(s))) {
    ask_source_number(s, text::redundancy_level, source_of(s));
  } else {
    run_screen(source_screen, s);
  }
}

const Row condition_rows[] = {
    {.act = Act::open,
     .lead = "      1 - ",
     .label = text::delete_entry,
     .enter = delete_condition},
    {.act = Act::custom,
     .lead = "      2 - ",
     .label = text::condition_type,
     .value = [](const Subject& s) { return type_name(type_of(s)); },
     .open = [](const Subject& s) { run_screen(first_page, s); }},
    {.act = Act::custom,
     .lead = "      3 - ",
     .label = text::condition_source,
     .value = source_text,
     .open = edit_source},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};
const Screen condition_screen{.start_row = 2, .title = text::group_event, .rows = condition_rows};

// --- The list of the conditions -----------------------------------------------------------------

void print_condition(const Subject& s, int item) {
  std::string line;
  fill_gr_event_name(s.index, s.event, item - 1, line);
  print_list_number(item, short_number_columns);
  print_value(line, short_number_columns);
}

int open_condition(const Subject& s, int item) {
  group_job_param2(s.index, s.event, item - 1);
  return item;
}

const Row list_rows[] = {
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};
const Screen list_screen{.start_row = 2,
                         .title = text::conditions,
                         .rows = list_rows,
                         .listed = condition_count,
                         .list_line = print_condition,
                         .list_enter = open_condition};

}  // namespace

void print_group_param_new(int selected, int group, int event) {
  print_screen(list_screen, {.index = group, .event = event}, selected);
}

void group_job_param_new(int group, int event) {
  run_screen(list_screen, {.index = group, .event = event});
}

void fill_gr_event_name(int group, int event, int condition, std::string& text) {
  const Subject s{.index = group, .event = event, .part = condition};
  text = type_name(type_of(s));
  if (type_of(s) == 0 || text.empty()) return;
  const int source = source_of(s);
  const bool is_count =
      !about_redundancy(type_of(s)) && source >= count_base && source < source_any;
  text += format(" - [%d]", is_count ? source - count_base : source);
}

void print_group_job_param2(int selected, int group, int event, int condition) {
  print_screen(condition_screen, {.index = group, .event = event, .part = condition}, selected);
}

void group_job_param2(int group, int event, int condition) {
  run_screen(condition_screen, {.index = group, .event = event, .part = condition});
}

void print_group_job_event(int selected, int first, int last) {
  Screen page = first == 1 ? first_page : second_page;
  page.listed = last - first + 1;
  print_screen(page, {}, selected);
}
