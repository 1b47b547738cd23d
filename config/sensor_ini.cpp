#include "config/sensor_ini.h"

#include "config/ini_reader.h"
#include "config/ini_writer.h"
#include "tui/diag.h"

namespace {
constexpr char file_name[] = "sensor.ini";
}

int LoadSensorINI() { return EncodeINIFile(sensor_file, program_path(file_name).c_str()); }

int SaveSensorINI() { return save_file(sensor_file, file_name); }
