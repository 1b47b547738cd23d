#pragma once

#include "config/ini_reader.h"

/// What the reader of the configuration passes over, cuts, or takes for something else. It listens
/// to the reader, so it cannot disagree with what the editor does.

/// Hears the reader as long as it lives: notes the lines of sections and values in the `sources`,
/// and adds findings of the groups `reading` and `values`.
class Listening {
 public:
  Listening();
  ~Listening() { piece_listener = nullptr; }
  Listening(const Listening&) = delete;
  Listening& operator=(const Listening&) = delete;
};
