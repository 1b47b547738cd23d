#pragma once

/// The events of a group: the list of all 64, eight to a page, and the screen of one. Groups are
/// numbered 0 to 9, events 0 to 63 (1 to 64 on the screen). Edits `INI1`.

/// The list, from its first page on.
void gr_event(int group);

/// Draws the page that shows the numbers `first` to `last`, the arrow on item `selected`.
void print_gr_event(int selected, int group, int first, int last);

/// The screen of an event. One without a first condition is empty: opening it clears at once
/// whatever a deleted event left there and fills in the defaults.
void gr_event_param(int group, int event);
void print_gr_event_param(int selected, int group, int event);
