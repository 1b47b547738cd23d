// Loaded before the C library by a case: the memory for the texts of the menus runs out half way.

#include <cstddef>

#include "lang/lang_text.h"

extern "C" {

void* __libc_malloc(std::size_t size);  // NOLINT(bugprone-reserved-identifier)

void* malloc(std::size_t size) {
  static int texts = 0;
  if (size == text_size && ++texts > text_count / 2) return nullptr;
  return __libc_malloc(size);
}
}
