#include <unistd.h>

#include <new>

#include "app/run.h"
#include "tui/terminal.h"

int main(int, char* argv[]) {
  try {
    return run(argv[0] == nullptr ? "" : argv[0]);
  } catch (const std::bad_alloc&) {
    constexpr char message[] = "\n\rLow memory for strings !";
    restore_terminal();
    [[maybe_unused]] const ssize_t sent = write(STDOUT_FILENO, message, sizeof message - 1);
    return 4;
  }
}
