#include "schedule/jobs.h"

#include "lang/lang_text.h"
#include "lang/text_ids.h"

namespace {

constexpr int shutdown_started = 2;
constexpr std::uint16_t seconds_between_messages = 60;

/// The events of sensors do not come in pairs: 24, 27 and 29 are the ends of the others.
bool begins_something(int event) {
  if (event < ups_event_count) return event % 2 == 0;
  return event != 24 && event != 27 && event != 29;
}

int default_message(int event, int variant) {
  if (event >= ups_event_count) return text::sensor_message_base + event;
  if (variant != 0) return text::long_message_first + event;
  // Users are asked to save their work, which the name of this event does not say.
  return event == shutdown_started ? text::message_shutdown_started : text::event_first + event;
}

}  // namespace

void JobToDefault(Job& job, int event, int variant) {
  job = {};
  job.Log = 1;
  job.LocalMessage = 1;
  if (begins_something(event)) job.LocalMessageInterval = seconds_between_messages;
  job.Message.assign(LangText[default_message(event, variant)]);
}

void values_to_default(int first, int last) {
  for (int event = first; event <= last; ++event) JobToDefault(INI1.job[event], event, 0);
}
