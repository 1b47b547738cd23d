#include "check/meaning.h"

void check_meaning() {}
