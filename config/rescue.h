#pragma once

#include <string>

/// Puts all files but those that could not be read, as they should be after a complete save, into a
/// fresh folder of their own that nobody else may open: in `TMPDIR`, otherwise /var/tmp, otherwise
/// the home folder. `write_all` calls all writers and returns 0 or errno. Returns a sentence for
/// the operator, which names the folder or says that there is none.
std::string rescue_files(int (*write_all)());
