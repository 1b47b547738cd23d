#include "schedule/jobs.h"

#include "lang/lang_text.h"
#include "lang/text_ids.h"

namespace {

constexpr std::uint16_t seconds_between_messages = 60;

// The table of the events does not know the names of the texts; here both can be seen.
static_assert(events[0].name == text::event_first);
static_assert(events[21].name == text::event_sensor_alarm_ended);
static_assert(events[2].message == text::message_shutdown_started);
static_assert(events[22].message == text::message_humidity_high);
static_assert(events[29].message == text::message_input_normal);
static_assert(events[0].sentence == text::long_message_first);
static_assert(events[21].sentence == text::long_sensor_alarm_ended);

}  // namespace

void JobToDefault(Job& job, int event, int variant) {
  job = {};
  job.Log = 1;
  job.LocalMessage = 1;
  if (events[event].begins) job.LocalMessageInterval = seconds_between_messages;
  job.Message.assign(LangText[variant == 0 ? events[event].message : events[event].sentence]);
}

void values_to_default(int first, int last) {
  for (int event = first; event <= last; ++event) JobToDefault(INI1.job[event], event, 0);
}
