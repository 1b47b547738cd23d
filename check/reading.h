#pragma once

#include "config/ini_reader.h"

/// What the reader of the configuration passes over, cuts, or takes for something else. It listens
/// to the reader, so it cannot disagree with what the editor does.

/// Between two runs: no file has been read yet.
void begin_reading();

/// The listener. Notes the lines of sections and values in the `sources`, and adds findings of the
/// groups `reading` and `values`.
void listen_to_piece(int file, const ReadPiece& piece);
