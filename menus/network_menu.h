#pragma once

/// The network parameters: how the service offers itself on the network, and its password.
void network_param();
void print_network_menu(int selected);
