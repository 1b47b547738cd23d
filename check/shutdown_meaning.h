#pragma once

/// Whether the system is shut down at all, and by what.

void check_script();    // no_script
void check_shutdown();  // no_shutdown
