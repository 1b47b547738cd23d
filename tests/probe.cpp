// Calls functions of the program one after the other, at a terminal and in the folder it is started
// in: the way to those that no screen calls. Each is named with its arguments on the command line.
// Its result is shown after ">". A function that draws leaves its screen when a key is pressed.

#include <sys/prctl.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "config/store.h"
#include "groups/group_conditions.h"
#include "groups/group_events.h"
#include "groups/group_jobs.h"
#include "groups/group_members.h"
#include "groups/group_param.h"
#include "lang/lang_text.h"
#include "lang/language_choice.h"
#include "menus/main_menu.h"
#include "menus/messages_menu.h"
#include "menus/modem_menus.h"
#include "menus/network_menu.h"
#include "menus/system_menu.h"
#include "schedule/job_menus.h"
#include "schedule/jobs.h"
#include "schedule/parallel_functions.h"
#include "schedule/schedule_editor.h"
#include "schedule/schedule_menus.h"
#include "tui/columns.h"
#include "tui/diag.h"
#include "tui/editors.h"
#include "tui/format.h"
#include "tui/screen.h"
#include "tui/terminal.h"
#include "ups/type_code.h"
#include "ups/ups_connection.h"
#include "ups/ups_list.h"
#include "ups/ups_param.h"

namespace {

struct Call {
  std::size_t arguments;
  std::function<std::string(char** words)> run;
};

/// The word "null" is a null pointer. A text that a function returns is shown in quotes.
template <typename T>
T argument(const char* word) {
  if constexpr (std::is_integral_v<T>)
    return static_cast<T>(std::strtoll(word, nullptr, 10));
  else if constexpr (std::is_pointer_v<T>)
    return std::strcmp(word, "null") == 0 ? nullptr : word;
  else
    return word;
}

template <typename Result, typename... Arguments>
Call call(Result (*function)(Arguments...)) {
  const auto run = [function](char** words) -> std::string {
    const auto apply = [&]<std::size_t... I>(std::index_sequence<I...>) {
      return function(argument<Arguments>(words[I])...);
    };
    constexpr auto all = std::index_sequence_for<Arguments...>();
    if constexpr (std::is_integral_v<Result>)
      return std::to_string(apply(all));
    else if constexpr (std::is_void_v<Result>)
      return apply(all), "";
    else
      return '"' + std::string(apply(all)) + '"';
  };
  return {sizeof...(Arguments), run};
}

// In place of functions that need more than words, others with the same names:

template <auto pad>
std::string padded(std::string text, int width, std::string_view fill) {
  pad(text, width, fill);
  return text;
}
const auto center = padded<::center>;
const auto dopln = padded<::dopln>;

template <auto edit>
std::string edited(std::size_t size, const char* prompt) {
  char field[32] = "old";
  edit(field, size, prompt);
  return field;
}
const auto get_str1 = edited<::get_str1>;
const auto get_prtk = edited<::get_prtk>;

std::string FindUpsModelTxt(const char* code) {
  const bool known = ::FindUpsModelTxt(code) == &FindModel;
  return format("%s %d %d %d %s", FindModel.text, FindModel.number, FindModel.flag, FindModel.baud,
                known ? "" : "null");
}

/// The interval and the message of a job that was full before; "and more" if not all else is as in
/// every default.
std::string JobToDefault(int event, int variant) {
  Job job;
  std::memset(&job, 0xEE, sizeof job);
  ::JobToDefault(job, event, variant);
  Job expected = {};
  expected.Log = expected.LocalMessage = 1;
  expected.LocalMessageInterval = job.LocalMessageInterval;
  expected.Message = job.Message;
  const bool alone = std::memcmp(&job, &expected, sizeof job) == 0;
  return std::to_string(job.LocalMessageInterval) + (alone ? " " : " and more ") +
         std::string(job.Message.view());
}

std::string getnum(const char* text) {
  std::uint16_t number = 4711;
  const int digits = ::getnum(text, number);
  return std::to_string(number) + " from " + std::to_string(digits) + " digits";
}

/// The shortest of some ticks, with a timer that does not round them up.
std::string s_tick() {
  prctl(PR_SET_TIMERSLACK, 1);
  auto shortest = std::chrono::steady_clock::duration::max();
  for (int i = 0; i < 100; ++i) {
    const auto start = std::chrono::steady_clock::now();
    ::s_tick();
    shortest = std::min(shortest, std::chrono::steady_clock::now() - start);
  }
  return shortest < std::chrono::microseconds(20) ? "too short" : "a tick";
}

std::string choice_language() {
  ::choice_language();
  return std::to_string(INI.system.Language);
}

std::string LoadText(int program) {
  const std::string result = std::to_string(::LoadText(program, 0));
  return result + " [" + LangFileVersion + "] " + sys_mess[0] + " " + sys_mess[19] + " " + LM[0] +
         " " + LM[49];
}

std::string print_next_actions(std::int64_t start, std::int64_t end, int selected) {
  const int lines = ::print_next_actions(&start, &end, selected);
  return std::to_string(lines) + " up to " + std::to_string(start);
}

/// Returns functions by their names, between which `names` has a comma and a blank.
template <typename... Functions>
std::map<std::string_view, Call> named(std::string_view names, Functions... functions) {
  std::map<std::string_view, Call> calls;
  for (const Call& each : {call(functions)...}) {
    const std::size_t end = std::min(names.find(", "), names.size());
    calls[names.substr(0, end)] = each;
    names.remove_prefix(std::min(names.size(), end + 2));
  }
  return calls;
}

#define NAMED(...) named(#__VA_ARGS__, __VA_ARGS__)

const std::map<std::string_view, Call> calls = NAMED(
    print_main_menu, print_main_param, print_network_menu, print_mess_param, print_gsm_param,
    print_modem_param, print_gsm_modem_param, print_wap_param, print_sched_param, print_sch_param,
    print_conn_param, print_ups_param, print_ups_conn_param, print_jobs_param, print_job_param,
    print_job_param1, print_job_param2, print_paralel_fnc, print_paralel_group, print_group_param,
    print_gr_ups, print_gr_event, print_gr_event_param, print_group_param_new,
    print_group_job_param1, print_group_job_param2, print_group_job_event, get_int, get_yesno,
    yesno, yesnostr, cut_marked, print_next_actions, center, dopln, get_str1, get_prtk, getnum,
    s_tick, choice_language, LoadText, FindUpsModelTxt, JobToDefault, SaveINI);

}  // namespace

int main(int, char** words) {
  std::strcpy(ProgramDir, "./");
  if (LoadINI() != 0 || AllocText() != 0) return EXIT_FAILURE;
  ::LoadText(harrier, 0);  // unless the file is one of a case
  take_terminal();
  put("\033[40m\033[1;37m");  // as the main menu
  while (*++words != nullptr) {
    const Call& called = calls.at(*words);
    const bool draws = std::string_view(*words).starts_with("print_");
    if (draws) put("\033[?25l");
    draws ? single_key_mode() : line_mode();
    const std::string result = called.run(words + 1);
    words += called.arguments;
    if (draws) {
      read_key();
      put("\033[?25h\033[2J");
      line_mode();
    }
    print("\n\r> %s\n\r", result.c_str());
  }
  give_terminal_back();
}
