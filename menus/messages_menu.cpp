#include "menus/messages_menu.h"

#include "kit/screens.h"
#include "kit/value_entry.h"
#include "lang/lang_text.h"
#include "menus/modem_menus.h"
#include "tui/columns.h"
#include "tui/terminal.h"

namespace {

// --- The menu -----------------------------------------------------------------------------------

constexpr Row message_rows[] = {
    open("1", text::sms_recipients, opens<gsm_param>),
    rule,
    open("2", text::modem, opens<modem_param>),
    open("3", text::gsm_modem, opens<gsm_modem_param>),
    open("4", text::wap_access, opens<wap_param>),
    rule,
    back,
};

constexpr Screen messages_screen{.start_row = 4, .title = text::messages, .rows = message_rows};

// --- The recipients -----------------------------------------------------------------------------

constexpr char deletion_mark = '*';

/// Prints a label and a value after it, filled up to `width` columns.
void print_labelled(text::Id label, std::string_view value, int width, bool goes_on) {
  print_cut(shown_text(label) + ":  ", true);
  std::string shown = printable(value);
  print_value(dopln(shown, width, " "), goes_on);
}

void print_recipient(const Subject&, int item) {
  const SMS& recipient = INI1.sms[item - 1];
  if (recipient.Name.empty()) {
    print_cut(shown_text(text::unused));
    return;
  }
  constexpr int name_columns = 20;
  print_labelled(text::name, recipient.Name.view(), name_columns, true);
  print_labelled(text::telephone_number, recipient.TelNumber.view(), 0, false);
}

void edit_recipient(const Subject&, int item) {
  SMS& recipient = INI1.sms[item - 1];
  Text<32>& name = recipient.Name;
  ask_name(text::name, name.view(), text::delete_recipient_hint, name.bytes, sizeof name.bytes);
  // The present name counts, typed or not. So Enter alone deletes a recipient whose stored name
  // begins with the mark.
  if (name.bytes[0] == deletion_mark) {
    // The number stays in the record. The writer leaves it out together with the slot.
    name.bytes[0] = '\0';
  } else {
    edit_text_field(text::telephone_number, recipient.TelNumber.bytes,
                    sizeof recipient.TelNumber.bytes);
  }
}

constexpr Screen recipients_screen{
    .start_row = 2,
    .title = text::sms_recipients,
    .list = {.count = sms_count, .line = print_recipient, .enter = edit_recipient},
    .rows = only_back};

}  // namespace

void print_mess_param(int selected) { print_screen(messages_screen, {}, selected); }

void mess_param() { run_screen(messages_screen); }

void print_gsm_param(int selected) { print_screen(recipients_screen, {}, selected); }

void gsm_param() { run_screen(recipients_screen); }
