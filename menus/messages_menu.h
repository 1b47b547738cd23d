#pragma once

/// The messages menu, item 3 of the main menu: the recipients of SMS messages and the ways to the
/// modems and to WAP.
void mess_param();
void print_mess_param(int selected);

/// The list of SMS recipients. Enter edits the name of a recipient and then its number. A name that
/// begins with "*" deletes the recipient.
void gsm_param();
void print_gsm_param(int selected);
