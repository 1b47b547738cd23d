#include "app/run.h"

#include <string>

#include "config/store.h"
#include "lang/lang_text.h"
#include "lang/text_ids.h"
#include "menus/main_menu.h"
#include "tui/columns.h"
#include "tui/diag.h"
#include "tui/editors.h"
#include "tui/terminal.h"

namespace {

int fail(const char* message, int status) {
  print("%s", message);
  flush();
  return status;
}

/// Asks whether to save, and saves. The files are written here and nowhere else.
void ask_and_save() {
  const std::string yes = shown_text(text::yes);
  const char* hint = yesnostr(yes.c_str(), shown_text(text::no).c_str());
  print("\n\r%s %s : ", shown_text(text::save_question).c_str(), hint);
  if (test_key() != upper_case(first_letter(yes))) {
    DataChanged = 0;
    return;
  }
  copy_record(INI, INI1);
  const int error = SaveINI();
  print("\n\r%s", shown_text(error == 0 ? text::saved : text::save_failed).c_str());
  for (const std::string& change : foreign_changes()) print("\n\r%s", change.c_str());
  print("\n\r");
  sleepp(1000);
}

}  // namespace

int run(const char* program) {
  getprgdir(program, ProgramDir, sizeof ProgramDir);
  if (LoadINI() != 0) return fail("\n\rCannot load initialization file !", 2);
  bDebug = INI.system.DebugMode;
  bDebugLog = INI.system.DebugLog;
  if (AllocText() != 0) return fail("\n\rLow memory for strings !", 4);
  if (LoadText(harrier, static_cast<signed char>(INI.system.Language)) != 0) {
    FreeText();
    return fail("\n\rCannot load language strings file !", 5);
  }
  copy_record(INI1, INI);  // the menus edit a copy of what was loaded
  main_menu();
  if (DataChanged != 0) ask_and_save();
  print("\n\r");
  FreeText();
  give_terminal_back();
  return DataChanged != 0 ? 1 : 0;
}
