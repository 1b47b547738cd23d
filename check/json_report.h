#pragma once

#include <string>

/// Prints all findings as one JSON object (RFC 8259), whatever bytes they hold. `folder` is empty
/// when files were checked on their own.
void put_json(const std::string& folder);
