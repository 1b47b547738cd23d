#pragma once

#include <cstdio>
#include <string>

#include "check/finding.h"

/// Findings as lines of text.

/// Whether text to this stream may have colours: it is a terminal that knows them, and the operator
/// has not set NO_COLOR (https://no-color.org).
bool has_colours(std::FILE* stream);

/// "kestrel.ini:41: error: sentence [class]" with a line feed.
std::string text_of(const Finding& finding, bool colours);

/// "3 errors, 1 warning, no notes", or "nothing found".
std::string text_of_counts();
