#include "config/kestrel_ini.h"

#include "config/ini_reader.h"
#include "config/ini_writer.h"
#include "tui/diag.h"

namespace {
constexpr char file_name[] = "kestrel.ini";
}

int LoadKestrelINI() { return EncodeINIFile(main_file, program_path(file_name).c_str()); }

int SaveKestrelINI() { return save_file(main_file, file_name); }
