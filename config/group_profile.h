#pragma once

#include <cstdint>

#include "config/record.h"

/// Group profiles: the events of one group in a binary file that the operator names, to carry them
/// to another group or another machine. The file is nothing but up to 64 records of 450 bytes, laid
/// out as `GroupEvent`, with every 16-bit number least significant byte first whatever the machine.
/// Only events in use are stored, one behind the other, and record k is loaded as event k: an
/// event may change its place on the way.
///
/// The messages of both functions go to `printfc`.

/// Clears `events` and fills them from the profile `path`. Returns 0 when the file could be opened,
/// whatever came of the reading, else errno; then the events stay as they are. The end is noticed
/// by a record that cannot be read whole, so every profile of fewer than 64 records ends with a
/// message and an empty event; one of 64 and more ends with the message that there is no more room.
/// A folder cannot be opened (EISDIR). Never waits: a pipe is read as far as it is filled.
int LoadGroupProfile(const char* path, GroupEvent (&events)[event_count]);

/// Writes the events in use to the profile `path`. Returns 0 when the file could be opened for
/// writing or created, else errno. When writing fails later on, 0 as well: a message tells, an old
/// profile keeps its contents, and no part of a new one is left. On a machine with the other byte
/// order the events in use are left with their numbers swapped.
int SaveGroupProfile(const char* path, GroupEvent (&events)[event_count]);

/// 1 on a machine that stores the most significant byte of a 16-bit number first, else 0.
int test_big_endian();

/// The number with its two bytes exchanged.
std::uint16_t swap_word(std::uint16_t value);

/// Exchanges the bytes of every 16-bit number of an event; the texts stay.
void swap_event_data(GroupEvent& event);
