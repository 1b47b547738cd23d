#pragma once

#include <string>
#include <string_view>

/// What findings must not show. They end up in the logs of other machines, which more people read
/// than the files.

/// Whether whoever reads the value of this key can enter somewhere.
bool is_secret(std::string_view key);

/// Whether findings hide the value of this key: of secrets, and of SNMP communities. These are no
/// secrets as long as they are "public", so nothing else is said about them.
bool is_hidden(std::string_view key);

/// A line that is not understood, without what may be its value: up to the first "=", ":" or blank,
/// and "..." for what follows. The key may be a misspelled secret.
std::string without_value(std::string_view line);
