#pragma once

#include <string>
#include <string_view>

#include "tests/folder.h"

/// Two promises of the check, each with what breaks it: nothing that a load and a save would lose
/// goes silently, and nothing that a save has written is blamed.

/// Checks the configuration in a folder, loads it and saves it. Returns an account of the first
/// line that did not come back and had no finding, or of the first finding about what has been
/// saved then. It may also say that the files cannot be loaded, or that a second save changes them.
/// Returns nothing when all is well.
std::string first_silent_line(const Folder& folder);

/// Saves `INI` into a folder, which it empties first, and checks it. Returns an account of the
/// first finding about reading or saving, nothing if there is none.
std::string first_false_alarm(const Folder& folder);

/// Makes `INI` a record of these bytes: each entry and each value takes some of them, and what they
/// do not reach is empty. Texts get any bytes, numbers any value. Left out is only what cannot be
/// loaded as it is saved and so takes an entry with it: a name that begins with a quote, an event
/// whose first condition has no low byte, and line feeds where the menus accept none.
void make_record(std::string_view input);
