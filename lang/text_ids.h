#pragma once

#include <cstdint>

/// The numbers of the texts in a language file, by name: screens write LangText[text::yes].
/// A number is the same text in every language and never changes its meaning, because languages
/// are added by people who see little more than the numbers: the check of their files reads this
/// header and tells the name of a text, so those that no screen writes have one too. Some texts
/// serve two screens; where they do, a comment says so, and a translation has to fit both. Gaps are
/// numbers that no screen uses.
namespace text {

enum Id : std::uint16_t {
  // The program and its end.
  product_title = 0,  // twice in the frame of the main menu
  save_question = 11,
  save_failed = 12,
  saved = 15,

  // Words that every screen shares.
  delete_entry = 2,  // also "none" in the choice of a group member
  ups_name = 68,     // also the UPS of a schedule
  name = 49,         // of an SMS recipient and of a group
  yes = 316,         // also the on word of settings; some screens show only its first letter
  no = 317,          // the off word beside `yes`; the first letters must differ
  back = 318,        // item 0 everywhere, so it leaves the main menu as well
  show_more = 320,   // next page of events and of condition types, more upcoming actions
  flag_on = 324,     // the on word of UPS and group settings
  flag_off = 340,    // the off word beside `flag_on`
  new_value = 332,   // prompt of every editor
  out_of_range = 333,
  unused = 335,           // a free slot; the list of groups shows it for every group
  keep_name_hint = 336,   // first hint below a name
  delete_ups_hint = 337,  // second hint below the name of a UPS
  delete_recipient_hint = 343,
  password_on = 38,      // of the service and of a UPS on TCP/IP
  enter_password = 342,  // item and title

  // Main menu.
  system_parameters = 17,
  ups_parameters = 127,  // also the title of the screen of one UPS
  messages = 197,        // also the title of its menu
  schedules = 65,
  jobs = 161,

  // System parameters.
  system_parameters_title = 16,
  system_name = 18,
  location = 19,
  contact = 20,
  language = 21,
  languages_title = 4,
  logging = 22,  // heading of the log settings, at present without a place on the screen
  event_log = 23,
  data_log = 24,
  data_log_rate = 25,
  data_log_min = 26,
  data_log_max = 27,
  bounds_corrected = 287,

  // Network parameters.
  network_parameters = 30,  // item and title
  network_port = 33,
  check_rate = 34,
  network_server = 35,
  ignore_remote_commands = 37,
  http_access = 41,
  http_path = 42,

  // Messages, modems and WAP.
  gsm_modem = 57,
  sms_recipients = 58,  // item and title
  telephone_number = 59,
  modem = 60,
  wap_access = 62,
  gsm_modem_title = 184,
  gsm_modem_allowed = 186,
  serial_port = 187,  // of the modem, of the GSM modem and of a UPS on a serial line
  sms_centre = 188,
  gsm_modem_type = 189,
  modem_title = 190,
  modem_allowed = 191,
  first_number = 192,
  second_number = 193,
  call_repeats = 194,
  call_delay = 195,
  incoming_calls = 196,
  wap_title = 204,
  wap_allowed = 205,

  // UPS list and the screen of one UPS.
  ups_list = 43,
  type_code = 50,
  unknown_model = 249,        // also refuses a type code that is being typed
  system_shutdown_rule = 72,  // after a delay and before the end of the battery alike
  serial_number = 129,
  shutdown_delay = 137,
  shutdown_lead = 138,
  ups_shutdown_allowed = 139,
  ups_shutdown_delay = 141,
  ups_in_group = 246,
  lead_corrected = 258,

  // Connection of a UPS.
  connection = 130,   // item, title and the label of the kind
  serial_line = 131,  // a kind of connection
  device_address = 133,
  ip_address = 135,
  ups_port = 136,
  unknown_connection = 242,
  choose_ups = 330,

  // Schedules.
  schedules_title = 66,
  schedule_title = 222,
  schedule_action = 102,  // label and title of the choice
  schedule_time = 51,     // label and title of the choice
  schedule_system_shutdown = 273,
  schedule_ups_shutdown = 274,
  schedule_ups_restart = 142,
  schedule_ups_test = 275,
  schedule_battery_test = 276,
  schedule_panel_test = 277,
  schedule_not_set = 278,  // unknown action and unknown repetition
  enter_time = 209,
  once_hint = 279,
  time_hint = 280,
  time_refused = 283,
  once = 223,  // the four repetitions: items of the choice and the first word of the time shown
  daily = 224,
  weekly = 225,
  monthly = 226,
  weekday_first = 227,  // the list shows the first three characters of a weekday
  sunday = weekday_first,
  monday = 228,
  tuesday = 229,
  wednesday = 230,
  thursday = 231,
  friday = 232,
  saturday = 233,
  choose_day = 328,  // title of the weekdays, prompt of the day of the month
  upcoming_title = 234,
  upcoming = 235,

  // Jobs.
  jobs_title = 77,
  disable_jobs = 78,  // when this is on, no job runs
  job_list = 338,     // item of the first list and title of both
  job_list_more = 339,
  all_defaults = 117,  // item and title of its question
  job_defaults = 116,
  job_defaults_question = 284,
  shutdown_script = 73,  // item and title
  edit_script_question = 74,

  // Events 0 to 21: name of the event, message of its job, condition type event + 1 of a group,
  // and (0 to 9) first heading above the actions of a group.
  condition_base = 78,  // + condition type, 1 to 22
  event_first = 79,     // + event
  event_power_failure = event_first,
  event_power_restored = 80,
  event_shutdown_started = 81,
  event_shutdown_cancelled = 82,
  event_ups_shutdown_started = 83,
  event_ups_shutdown_cancelled = 84,
  event_battery_low = 85,
  event_battery_charged = 86,
  event_overload = 87,
  event_overload_ended = 88,
  event_temperature_high = 89,
  event_temperature_normal = 90,
  event_bypass_on = 91,
  event_bypass_off = 92,
  event_fault = 93,
  event_fault_ended = 94,
  event_communication_lost = 95,
  event_communication_restored = 96,
  event_battery_test_failed = 97,
  event_battery_test_passed = 98,
  event_sensor_alarm = 99,
  event_sensor_alarm_ended = 100,

  // Actions of a job and of a group event, in the order of the record.
  action_first = 106,  // + action
  action_log = action_first,
  action_execute = 107,  // also the title of the program file's editor
  action_local_message = 108,
  action_network_message = 109,
  action_shutdown = 110,  // also the operating system's shutdown of a schedule
  action_email = 111,
  action_sms = 112,
  action_call = 113,
  message = 101,
  delay = 103,
  repeat_interval = 104,
  program_file = 105,

  // Parallel functions and groups.
  parallel_functions = 47,  // item and title
  groups_enabled = 144,
  device_actions = 146,
  lost_communication_alarm = 147,
  no_single_shutdown = 148,
  groups = 149,  // item and title
  group_title = 162,
  redundancy_level = 310,  // also the number of a redundancy condition
  battery_shutdown_allowed = 152,
  battery_runtime_limit = 153,
  group_shutdown_allowed = 154,
  group_shutdown_delay = 155,
  group_ups_shutdown_allowed = 156,
  group_ups_shutdown_delay = 157,
  group_members = 150,  // item and title
  load_profile = 165,   // item, title and prompt
  save_profile = 166,   // item, title and prompt
  profile_failed = 8,

  // Events of a group and their conditions.
  group_events = 163,  // item and title
  group_event_title = 160,
  group_event = 164,          // before the message in the list; also the title of one condition
  conditions = 167,           // item and title
  condition_type = 168,       // label and title of the choice
  redundancy_lost = 303,      // condition type 23
  redundancy_restored = 304,  // condition type 24
  condition_source = 170,     // label and title of the choice
  source_member = 171,        // shown with a number
  source_count = 172,         // shown with a number
  source_any = 173,
  source_all = 174,
  source_number = 175,

  // Messages of jobs that are not simply the name of their event.
  message_shutdown_started = 341,  // event 2

  sensor_message_base = 362,  // + event, 22 to 29
  message_humidity_high = 384,
  message_humidity_low = 385,
  message_humidity_normal = 386,
  message_temperature_high = 387,
  message_temperature_low = 388,
  message_temperature_normal = 389,
  message_input_alarm = 390,
  message_input_normal = 391,

  long_message_first = 400,  // + event, 0 to 21: the same in whole sentences
  long_power_failure = long_message_first,
  long_power_restored = 401,
  long_shutdown_started = 402,
  long_shutdown_cancelled = 403,
  long_ups_shutdown_started = 404,
  long_ups_shutdown_cancelled = 405,
  long_battery_low = 406,
  long_battery_charged = 407,
  long_overload = 408,
  long_overload_ended = 409,
  long_temperature_high = 410,
  long_temperature_normal = 411,
  long_bypass_on = 412,
  long_bypass_off = 413,
  long_fault = 414,
  long_fault_ended = 415,
  long_communication_lost = 416,
  long_communication_restored = 417,
  long_battery_test_failed = 418,
  long_battery_test_passed = 419,
  long_sensor_alarm = 420,
  long_sensor_alarm_ended = 421,

  last_used = long_sensor_alarm_ended,  // a language file is complete up to here
};

}  // namespace text
