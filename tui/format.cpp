#include "tui/format.h"

#include <cstdio>

void append_format(std::string& out, const char* form, va_list arguments) {
  char text[512];
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(text, sizeof text, form, arguments);
  const auto size = length < 0 ? 0 : static_cast<std::size_t>(length);
  if (size < sizeof text) {
    out.append(text, size);
  } else {
    const std::size_t used = out.size();
    out.resize(used + size + 1);
    std::vsnprintf(out.data() + used, size + 1, form, again);
    out.pop_back();
  }
  va_end(again);
}

std::string format(const char* form, ...) {
  std::string text;
  va_list arguments;
  va_start(arguments, form);
  append_format(text, form, arguments);
  va_end(arguments);
  return text;
}
