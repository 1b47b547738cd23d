#include "schedule/action_editor.h"

#include <string>
#include <vector>

#include "lang/lang_text.h"

const JobAction job_actions[action_count] = {
    {.label = text::action_log,
     .letter = "L",
     .flag = FIELD(Job, Log),
     .delay = FIELD(Job, LogDelay)},
    {.label = text::action_execute,
     .letter = "E",
     .flag = FIELD(Job, Execute),
     .delay = FIELD(Job, ExecuteDelay),
     .interval = FIELD(Job, ExecuteInterval),
     .file = FIELD(Job, File)},
    {.label = text::action_local_message,
     .letter = "O",
     .flag = FIELD(Job, LocalMessage),
     .delay = FIELD(Job, LocalMessageDelay),
     .interval = FIELD(Job, LocalMessageInterval)},
    {.label = text::action_network_message,
     .letter = "B",
     .flag = FIELD(Job, NetMessage),
     .delay = FIELD(Job, NetMessageDelay),
     .interval = FIELD(Job, NetMessageInterval)},
    {.label = text::action_shutdown,
     .letter = "S",
     .flag = FIELD(Job, Shutdown),
     .delay = FIELD(Job, ShutdownDelay)},
    {.label = text::action_email,
     .letter = "E",
     .flag = FIELD(Job, Email),
     .delay = FIELD(Job, EmailDelay)},
    {.label = text::action_sms,
     .letter = "M",
     .flag = FIELD(Job, SMS),
     .delay = FIELD(Job, SMSDelay)},
    {.label = text::action_call,
     .letter = "C",
     .flag = FIELD(Job, Call),
     .delay = FIELD(Job, CallDelay)},
};

namespace {

constexpr unsigned longest_wait = 9999;
constexpr int start_row = 2;
constexpr std::size_t line_3 = 2;

/// The editor on the screen, and what it shows.
ActionEditor opened;
ActionValues values;

const JobAction& action_at(int action) {
  static const JobAction none;
  return action >= 0 && action < action_count ? job_actions[action] : none;
}

bool exists(const Field& field) { return field.key != nullptr; }

std::uint16_t load(const Field& field, const Job& job) {
  return exists(field) ? static_cast<std::uint16_t>(number_at(field, &job)) : std::uint16_t{0};
}

void store(const Field& field, Job& job, std::uint16_t number) {
  if (exists(field)) set_number_at(field, &job, number);
}

/// As the frame of every screen, with a second title.
void print_headings(const Subject&) {
  print_escapeseq(clear_screen);
  cursor_gotopos(start_row, 0, 0);
  print_line(1);
  print_line(3);
  print_center(LangText[opened.heading]);
  print_center(LangText[text::action_first + opened.action]);
  print_line(3);
  print_line(1);
}

Row number_row(const char* lead, text::Id label, const Field& field) {
  return {.act = Act::number, .lead = lead, .label = label, .field = field, .high = longest_wait};
}

/// The lines of the editor. An item keeps its number where another has no line.
std::vector<Row> lines_of(const ActionEditor& editor) {
  std::vector<Row> lines;
  if (editor.items >= 1) {
    lines.push_back({.act = Act::flag,
                     .lead = "      1 - ",
                     .label = job_actions[editor.action].label,
                     .field = FIELD(ActionValues, flag)});
  }
  if (editor.items >= 2) {
    lines.push_back(number_row("      2 - ", text::delay, FIELD(ActionValues, delay)));
  }
  if (editor.items >= 3 && editor.shows_interval) {
    lines.push_back(number_row("      3 - ", text::repeat_interval, FIELD(ActionValues, interval)));
  }
  if (editor.items >= 4) {
    lines.push_back(
        {.act = Act::custom,
         .lead = "      4 - ",
         .label = text::program_file,
         .value =
             [](const Subject&) {
               return std::string(text_at(action_at(opened.action).file, opened.job));
             },
         .open = [](const Subject&) { edit_program_file(opened.action, *opened.job); }});
  }
  lines.push_back({});
  lines.push_back({.act = Act::back, .lead = "      0 - ", .label = text::back});
  if (lines.size() > line_3) lines[line_3].enter = editor.behind_line_3;
  return lines;
}

Screen screen_of(const std::vector<Row>& lines) {
  return {.start_row = start_row,
          .rows = lines,
          .entry = [](const Subject&) -> void* { return &values; },
          .frame = print_headings,
          .frame_lines = 6};
}

}  // namespace

Row action_row(const char* lead, int action, int (*enter)(const Subject&, int item),
               bool (*live)(const Subject&)) {
  return {.act = Act::flag,
          .lead = lead,
          .label = job_actions[action].label,
          .field = job_actions[action].flag,
          .live = live,
          .toggle = [](const Subject&) {},
          .enter = enter};
}

int action_items(int action) {
  const JobAction& fields = action_at(action);
  return exists(fields.file) ? 4 : exists(fields.interval) ? 3 : exists(fields.delay) ? 2 : 0;
}

void print_action_editor(const ActionEditor& editor, const ActionValues& values_shown,
                         int selected) {
  opened = editor;
  values = values_shown;
  print_screen(screen_of(lines_of(editor)), editor.subject, selected);
}

void run_action_editor(const ActionEditor& editor) {
  const JobAction& action = action_at(editor.action);
  Job& job = *editor.job;
  opened = editor;
  values = {load(action.flag, job), load(action.delay, job), load(action.interval, job)};
  const std::vector<Row> lines = lines_of(editor);
  run_screen(screen_of(lines), editor.subject);
  store(action.flag, job, values.flag);
  store(action.delay, job, values.delay);
  store(action.interval, job, values.interval);
}

void edit_program_file(int action, Job& job) {
  const Field& file = action_at(action).file;
  edit_text_field(text::action_execute, bytes_at(file, &job), file.width);
}
