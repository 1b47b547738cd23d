#pragma once

/// The list of the UPSs that the service watches.
void conn_param();

/// Draws the list with the arrow on `selected`.
void print_conn_param(int selected);
