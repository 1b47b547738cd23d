#pragma once

/// The list of the UPSs that the service watches.
void conn_param();
void print_conn_param(int selected);
