#include "lang/text_places.h"

#include <algorithm>
#include <iterator>

namespace text {

namespace {

namespace places {

// The frame has 70 columns, and no item should be wider. Long values from the files may be: the
// line has 79 columns for them. Messages and hints stand below the frame and have the whole line.
constexpr int frame = 70;

// The number of the item, the label and the word of a switch share the line. A colon, five blanks
// and the brackets stand between the label and the word.
constexpr int between = 8;
constexpr int after_number(int number_columns) { return frame - number_columns - between; }

// From the narrowest place to the widest. A text that stands in several names the first of them.

// Name and number of a recipient share a line with both values.
constexpr Place recipient{11, "a label of the list of recipients"};
// The value may be "weekly - Wednesday - 12:00".
constexpr Place time_label{14, "the label of a schedule's time"};
// The name and the model stand before it, a port and an address after it.
constexpr Place connection{14, "a connection in the list of UPS devices"};
constexpr Place model{18, "the column of the models in the list of UPS devices"};
// What follows the number of a free entry must not look like an entry.
constexpr Place free_place{20, "a free place of a list"};
constexpr Place word{20, "a word behind a label"};
constexpr Place time_part{19, "a part of a schedule's time"};
constexpr Place schedule_label{24, "a label before a long text of a schedule"};
// Without port and address a connection has the rest of its line.
constexpr Place other_connection{32, "a connection in the list of UPS devices"};
constexpr Place listed_action{39, "the column of the actions in the upcoming actions"};
// The letters of the actions follow in a column of their own.
constexpr Place event_name{40, "the name of an event in the list of jobs", Beside::nothing, true};
// Up to 17 columns stand before it. A colon, five blanks and a number of five digits follow.
constexpr Place label{frame - 17 - 11, "a label with a value"};
// Item 2.3.1 of a connection, and its title.
constexpr Place password_item{frame - 22, "the item for a new password"};
// Also the labels above an editor, and the items that open something. The number of an item takes
// up to 11 columns. A title has three columns more.
constexpr Place title{frame - 11, "a title or an item of a menu"};
constexpr Place title_end{62, "a title", Beside::enter_time};
constexpr Place hint{77, "a hint below a name"};
// One column of the line remains for the answer.
constexpr Place question{78, "a question", Beside::answers};
constexpr Place message_line{79, "a message on a line of its own"};
constexpr Place job_message{0, "the message of a job", Beside::nothing, true};

constexpr Place item_switch{after_number(10), "a label", Beside::yes_or_no};
constexpr Place action_switch{after_number(11), "a label", Beside::yes_or_no};
constexpr Place password_switch{after_number(16), "a label", Beside::yes_or_no};
constexpr Place ups_switch{after_number(10), "a label", Beside::on_or_off};
constexpr Place group_switch{after_number(11), "a label", Beside::on_or_off};

}  // namespace places

constexpr Row rows[] = {
#define TEXT(number, name, place) {name, #name, &places::place},
#include "lang/texts.inc"
#undef TEXT
};

constexpr bool numbers_are_sound() {
  return std::all_of(std::begin(rows), std::end(rows), [](const Row& row) {
    const auto same = [&](const Row& other) { return other.id == row.id; };
    return row.id <= last_used && std::count_if(std::begin(rows), std::end(rows), same) == 1;
  });
}
static_assert(numbers_are_sound(), "a number stands in two rows or after `last_used`");

}  // namespace

const Row* find_row(int number) {
  const Row* row = std::find_if(std::begin(rows), std::end(rows),
                                [&](const Row& candidate) { return candidate.id == number; });
  return row == std::end(rows) ? nullptr : row;
}

}  // namespace text
