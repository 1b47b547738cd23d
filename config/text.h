#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

/// A text of fixed width inside the configuration record. A text that fills all N bytes has no
/// terminator, so whoever reads it uses `view` and never `strlen`. Bytes after its end mean
/// nothing, but whoever stores a text clears them: then equal texts are equal bytes. Loading and
/// the line editors keep to this too, although they write `bytes` directly.
template <std::size_t N>
struct Text {
  char bytes[N];

  std::string_view view() const { return {bytes, strnlen(bytes, N)}; }
  bool empty() const { return bytes[0] == '\0'; }

  /// Stores `s`, cut to N bytes, and clears the rest, so that a value typed again leaves the same
  /// bytes. `s` must not point into this field.
  void assign(std::string_view s) {
    const std::size_t used = s.copy(bytes, N);
    std::memset(bytes + used, 0, N - used);
  }
};
