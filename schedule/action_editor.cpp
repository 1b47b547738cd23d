#include "schedule/action_editor.h"

#include <string>

#include "kit/screens.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"

namespace {

constexpr unsigned longest_wait = 9999;
constexpr int start_row = 2;

const JobAction& action_at(int action) {
  static constexpr JobAction none;
  return action >= 0 && action < action_count ? job_actions[action] : none;
}

bool exists(const Field& field) { return field.key != nullptr; }

std::uint16_t load(const Field& field, const Job& job) {
  return exists(field) ? static_cast<std::uint16_t>(number_at(field, &job)) : std::uint16_t{0};
}

void store(const Field& field, Job& job, std::uint16_t number) {
  if (exists(field)) set_number_at(field, &job, number);
}

/// The usual frame with a second title.
void print_headings(const Subject& s) {
  print_escapeseq(escape::clear_screen);
  cursor_gotopos(start_row, 0, 0);
  print_line(1);
  print_line(3);
  print_center(shown_text(s.edit->heading));
  print_center(shown_text(text::action_first + s.edit->action));
  print_line(3);
  print_line(1);
}

void* values_of(const Subject& s) { return &s.edit->values; }

text::Id action_label(const Subject& s) { return action_at(s.edit->action).label; }

bool has_flag(const Subject& s) { return s.edit->items >= 1; }
bool has_delay(const Subject& s) { return s.edit->items >= 2; }
bool has_interval(const Subject& s) { return s.edit->items >= 3 && s.edit->shows_interval; }
bool has_file(const Subject& s) { return s.edit->items >= 4; }

std::string program_file(const Subject& s) {
  return std::string(text_at(action_at(s.edit->action).file, s.edit->job));
}

void edit_file(const Subject& s) { edit_program_file(s.edit->action, *s.edit->job); }

int go_on_after_line_3(const Subject& s, int line) {
  return line == 3 && s.edit->after_line_3 != nullptr ? s.edit->after_line_3(*s.edit) : line;
}

// An item keeps its number when an item before it has no line.
constexpr Row editor_rows[] = {
    flag("1", text::action_log, FIELD(ActionValues, flag))
        .labelled(action_label)
        .present_if(has_flag),
    number("2", text::delay, FIELD(ActionValues, delay), 0, longest_wait).present_if(has_delay),
    number("3", text::repeat_interval, FIELD(ActionValues, interval), 0, longest_wait)
        .present_if(has_interval),
    custom("4", text::program_file, program_file, edit_file).present_if(has_file),
    rule,
    back,
};

constexpr Screen editor_screen{.start_row = start_row,
                               .rows = editor_rows,
                               .entry = values_of,
                               .frame = print_headings,
                               .frame_lines = 6,
                               .entered = go_on_after_line_3};

}  // namespace

int action_items(int action) {
  const JobAction& fields = action_at(action);
  return exists(fields.file) ? 4 : exists(fields.interval) ? 3 : exists(fields.delay) ? 2 : 0;
}

void print_action_editor(ActionEdit edit, int selected) {
  print_screen(editor_screen, {.edit = &edit}, selected);
}

void run_action_editor(ActionEdit edit) {
  const JobAction& action = action_at(edit.action);
  Job& job = *edit.job;
  edit.values = {load(action.flag, job), load(action.delay, job), load(action.interval, job)};
  run_screen(editor_screen, {.edit = &edit});
  store(action.flag, job, edit.values.flag);
  store(action.delay, job, edit.values.delay);
  store(action.interval, job, edit.values.interval);
}

void edit_program_file(int action, Job& job) {
  const Field& file = action_at(action).file;
  edit_text_field(text::action_execute, bytes_at(file, &job), file.width);
}
