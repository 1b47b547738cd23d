#pragma once

/// How the service reaches the UPS in slot 0 to 15.
void ups_conn_param(int slot);
void print_ups_conn_param(int selected, int slot);
