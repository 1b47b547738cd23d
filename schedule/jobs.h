#pragma once

#include "config/events.h"

/// The defaults of the jobs: what the service does when an event of a UPS or of a sensor occurs.

/// Sets a job to the defaults of event `event`, 0 to 29: it is logged and shown here, every other
/// action is off, all delays are 0. An event that begins something is shown every 60 seconds, an
/// end only once. The message is that of the event; a `variant` other than 0 takes the one in a
/// whole sentence, where there is one.
void JobToDefault(Job& job, int event, int variant);

/// Sets the jobs `first` to `last` of the working copy to their defaults.
void values_to_default(int first, int last);
