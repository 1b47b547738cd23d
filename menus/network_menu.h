#pragma once

/// The network parameters: how the service offers itself on the network, and its password.
void network_param();

/// Draws the network parameters with the arrow on `selected`.
void print_network_menu(int selected);
