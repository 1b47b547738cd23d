#include "check/saving.h"

void check_saving() {}
