#pragma once

/// The parameters of one UPS, in slot 0 to 15: what it is, and how the service shuts the computer
/// and the UPS down.
void ups_param(int slot);
void print_ups_param(int selected, int slot);
