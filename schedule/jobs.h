#pragma once

#include "config/record.h"

/// The jobs of the events of a UPS: what the service does when one occurs.

/// Events of a UPS, which are edited in the menus and come first among the jobs; behind them stand
/// those of sensors. Even ones begin something (a power failure), odd ones end it again.
constexpr int ups_event_count = 22;

/// Gives a job the defaults of event `event`, 0 to 29: it is logged and shown here, every other
/// action is off, all delays are 0. What begins is shown every 60 seconds, what ends only once.
/// The message is that of the event; for the events of a UPS a `variant` other than 0 takes the one
/// in whole sentences.
void JobToDefault(Job& job, int event, int variant);

/// Gives the jobs `first` to `last` of the working copy their defaults.
void values_to_default(int first, int last);
