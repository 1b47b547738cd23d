#include "check/files.h"

int look_for_files() { return 0; }
void check_files(const std::string&) {}
