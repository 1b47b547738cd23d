#include "groups/group_profiles.h"

#include "config/group_profile.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "tui/screen.h"
#include "tui/terminal.h"

namespace {

constexpr int start_row = 2;

/// Asks for the name of a file and calls `transfer` with it.
int transfer_events(text::Id title, int group,
                    int (*transfer)(const char* path, GroupEvent (&events)[event_count])) {
  char path[260] = "";
  print_frame(start_row, shown_text(title));
  print("\n\r%s :", shown_text(title).c_str());
  print_escapeseq(escape::show_cursor);
  ask_line(path, sizeof path, "");
  if (path[0] == '\0') return 0;
  const int error = transfer(path, INI1.group[group].events);
  if (error != 0) show_refusal(text::profile_failed);
  return error;
}

}  // namespace

int load_profile(int group) { return transfer_events(text::load_profile, group, LoadGroupProfile); }

int save_profile(int group) { return transfer_events(text::save_profile, group, SaveGroupProfile); }
