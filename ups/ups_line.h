#pragma once

#include <string>

/// How one UPS of the working copy is described, in the list of UPSs and wherever one is chosen.

/// Where the values of an RFC 1628 link come from. The list of UPSs shows the saved values, so an
/// unsaved change does not appear there. The schedule editor shows the values that are being
/// edited.
enum class LinkValues { saved, edited };

/// Prints what a list of all slots shows after the number of `slot`: name, model and link in
/// columns, or text 335 for a free slot.
void print_ups_line(int slot, LinkValues rfc1628);

/// The model of a UPS: its type code when that decodes, otherwise text 249.
std::string ups_model(int slot);
