#pragma once

#include <string>

/// Puts all files, as they should be after a complete save, into a fresh folder of their own that
/// nobody else may open: in `TMPDIR`, otherwise /var/tmp, otherwise the home folder. `write_all`
/// calls all writers. Returns a sentence for the operator, which names the folder or says that
/// there is none.
std::string rescue_files(void (*write_all)());
