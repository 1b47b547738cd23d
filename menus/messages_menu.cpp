#include "menus/messages_menu.h"

#include "lang/lang_text.h"
#include "menus/modem_menus.h"
#include "menus/screen_kit.h"
#include "tui/columns.h"
#include "tui/terminal.h"

namespace {

// --- The menu -----------------------------------------------------------------------------------

const Row message_rows[] = {
    {.act = Act::open,
     .lead = "      1 - ",
     .label = text::sms_recipients,
     .open = [](const Subject&) { gsm_param(); }},
    {},
    {.act = Act::open,
     .lead = "      2 - ",
     .label = text::modem,
     .open = [](const Subject&) { modem_param(); }},
    {.act = Act::open,
     .lead = "      3 - ",
     .label = text::gsm_modem,
     .open = [](const Subject&) { gsm_modem_param(); }},
    {.act = Act::open,
     .lead = "      4 - ",
     .label = text::wap_access,
     .open = [](const Subject&) { wap_param(); }},
    {},
    {.act = Act::back, .lead = "      0 - ", .label = text::back},
};

const Screen messages_screen{.start_row = 4, .title = text::messages, .rows = message_rows};

// --- The recipients -----------------------------------------------------------------------------

constexpr char deletion_mark = '*';

/// Prints a label and a value behind it, padded to `width` columns. `used` is where the line is.
void print_labelled(text::Id label, std::string_view value, int width, int& used) {
  const std::string head = std::string(LangText[label]) + ":  ";
  print_cut(head, used);
  used += columns(head);
  std::string shown = printable(value);
  print_value(dopln(shown, width, " "), used);
  used += columns(shown);
}

void print_recipient(const Subject&, int item) {
  const SMS& recipient = INI1.sms[item - 1];
  print_list_number(item);
  if (recipient.Name.empty()) {
    put(LangText[text::unused]);
    return;
  }
  constexpr int name_columns = 20;
  int used = number_columns;
  print_labelled(text::name, recipient.Name.view(), name_columns, used);
  print_labelled(text::telephone_number, recipient.TelNumber.view(), 0, used);
}

void edit_recipient_name(Text<32>& name) {
  begin_name_entry(text::name, name.view(), text::delete_recipient_hint);
  ask_line(name.bytes, sizeof name.bytes, LangText[text::new_value]);
}

int edit_recipient(const Subject&, int item) {
  SMS& recipient = INI1.sms[item - 1];
  edit_recipient_name(recipient.Name);
  // The name counts as it stands now: Enter alone deletes a recipient whose stored name begins so.
  if (recipient.Name.bytes[0] == deletion_mark) {
    // The number stays in the record: it is gone with the slot when the file is written.
    recipient.Name.bytes[0] = '\0';
  } else {
    edit_text_field(text::telephone_number, recipient.TelNumber.bytes,
                    sizeof recipient.TelNumber.bytes);
  }
  return item;
}

const Row recipient_rows[] = {
    {},
    {.act = Act::back, .lead = "       0 - ", .label = text::back},
};

const Screen recipients_screen{.start_row = 2,
                               .title = text::sms_recipients,
                               .rows = recipient_rows,
                               .listed = sms_count,
                               .list_line = print_recipient,
                               .list_enter = edit_recipient};

}  // namespace

void print_mess_param(int selected) { print_screen(messages_screen, {}, selected); }

void mess_param() { run_screen(messages_screen); }

void print_gsm_param(int selected) { print_screen(recipients_screen, {}, selected); }

void gsm_param() { run_screen(recipients_screen); }
