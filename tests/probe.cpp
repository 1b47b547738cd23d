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
#include "schedule/parallel_functions.h"
#include "schedule/schedule_editor.h"
#include "schedule/schedule_menus.h"
#include "tui/diag.h"
#include "tui/editors.h"
#include "tui/screen.h"
#include "tui/terminal.h"
#include "ups/ups_connection.h"
#include "ups/ups_list.h"
#include "ups/ups_param.h"

namespace {

// --- Calls --------------------------------------------------------------------------------------

struct Call {
  std::size_t arguments;
  std::function<std::string(char** words)> run;
};

/// The word "null" is a null pointer.
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
      return apply(all);
  };
  return {sizeof...(Arguments), run};
}

// --- Functions with results of their own --------------------------------------------------------

template <auto pad>
std::string padded(const char* text, int width, std::string_view fill) {
  std::string buffer = text;
  return "\"" + pad(buffer, width, fill) + "\"";
}

template <auto edit>
std::string edited(std::size_t size, const char* prompt) {
  char field[32] = "old";
  edit(field, size, prompt);
  return std::string("\"") + field + "\"";
}

std::string number_of(const char* text) {
  std::uint16_t number = 4711;
  const int digits = getnum(text, number);
  return std::to_string(number) + " from " + std::to_string(digits) + " digits";
}

/// The shortest of some ticks in microseconds, with a timer that does not round them up.
std::string tick() {
  prctl(PR_SET_TIMERSLACK, 1);
  auto shortest = std::chrono::steady_clock::duration::max();
  for (int i = 0; i < 100; ++i) {
    const auto start = std::chrono::steady_clock::now();
    s_tick();
    shortest = std::min(shortest, std::chrono::steady_clock::now() - start);
  }
  return shortest < std::chrono::microseconds(20) ? "too short" : "a tick";
}

std::string choose_language() {
  choice_language();
  return std::to_string(INI.system.Language);
}

std::string load_text(int program) {
  const std::string result = std::to_string(LoadText(program, 0));
  return result + " [" + LangFileVersion + "] " + sys_mess[0] + " " + sys_mess[19] + " " + LM[0] +
         " " + LM[49];
}

std::string draw_next_actions(std::int64_t start, std::int64_t end, int selected) {
  const int lines = print_next_actions(&start, &end, selected);
  return std::to_string(lines) + " up to " + std::to_string(start);
}

#define CALL(function) \
  { #function, call(function) }

const std::map<std::string_view, Call> calls = {
    CALL(print_main_menu),
    CALL(print_main_param),
    CALL(print_network_menu),
    CALL(print_mess_param),
    CALL(print_gsm_param),
    CALL(print_modem_param),
    CALL(print_gsm_modem_param),
    CALL(print_wap_param),
    CALL(print_sched_param),
    CALL(print_sch_param),
    CALL(print_conn_param),
    CALL(print_ups_param),
    CALL(print_ups_conn_param),
    CALL(print_jobs_param),
    CALL(print_job_param),
    CALL(print_job_param1),
    CALL(print_job_param2),
    CALL(print_paralel_fnc),
    CALL(print_paralel_group),
    CALL(print_group_param),
    CALL(print_gr_ups),
    CALL(print_gr_event),
    CALL(print_gr_event_param),
    CALL(print_group_param_new),
    CALL(print_group_job_param1),
    CALL(print_group_job_param2),
    CALL(print_group_job_event),
    {"print_next_actions", call(draw_next_actions)},
    {"center", call(padded<center>)},
    {"dopln", call(padded<dopln>)},
    {"get_str1", call(edited<get_str1>)},
    {"get_prtk", call(edited<get_prtk>)},
    {"getnum", call(number_of)},
    {"s_tick", call(tick)},
    {"choice_language", call(choose_language)},
    {"LoadText", call(load_text)},
    CALL(get_int),
    CALL(get_yesno),
    CALL(yesno),
    CALL(yesnostr),
};

}  // namespace

int main(int, char** words) {
  std::strcpy(ProgramDir, "./");
  if (LoadINI() != 0 || AllocText() != 0) return EXIT_FAILURE;
  LoadText(harrier, 0);  // unless the file is one of a case
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
