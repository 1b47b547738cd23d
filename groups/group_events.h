#pragma once

/// The events of a group: the list of all 64, eight on a page, and the screen of an event. Groups
/// are numbered 0 to 9, events 0 to 63 (1 to 64 on the screen). Edits `INI1`.

/// The list, from its first page on.
void gr_event(int group);

/// Draws the page that shows the numbers `first` to `last`, the arrow on item `selected`.
void print_gr_event(int selected, int group, int first, int last);

/// The screen of an event. An event without a first condition is empty. Opening it clears at once
/// what a deleted event left there, and fills in the defaults.
void gr_event_param(int group, int event);
void print_gr_event_param(int selected, int group, int event);
