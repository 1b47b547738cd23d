#include "app/run.h"

int main(int, char* argv[]) { return run(argv[0] == nullptr ? "" : argv[0]); }
