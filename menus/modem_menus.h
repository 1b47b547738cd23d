#pragma once

/// The screens that the messages menu opens, each with an on/off switch as its first item. While a
/// switch is off, the other settings of its screen are dimmed.

/// The dial-up modem.
void modem_param();
void print_modem_param(int selected);

/// The GSM modem that sends the SMS messages.
void gsm_modem_param();
void print_gsm_modem_param(int selected);

/// WAP access.
void wap_param();
void print_wap_param(int selected);
