#pragma once

#include <cstddef>
#include <cstdint>

#include "config/record.h"

/// Group profiles: the events of a group in a binary file that the operator names, to carry them to
/// another group or another machine. The file is up to 64 records of 450 bytes and nothing else. A
/// record is laid out as `GroupEvent`; the least significant byte of a number comes first on every
/// machine. Only events in use are stored, without gaps, and record k is loaded as event k: so an
/// event may change its number.
///
/// Both functions report through `printfc`.

/// Clears `events` and fills them from the profile `path`. Returns 0 when the file could be opened,
/// even if reading failed later. Otherwise returns errno, and the events stay as they are. A record
/// that cannot be read whole is taken for the end. So a profile of fewer than 64 records ends with
/// a message and an empty event, and a profile of 64 or more with the message that there is no more
/// room. A folder cannot be opened (EISDIR). Never waits: a pipe is read as far as it is filled.
int LoadGroupProfile(const char* path, GroupEvent (&events)[event_count]);

/// Is told of each record that `LoadGroupProfile` reads: its number from 0 on and how many of its
/// bytes were there. Null unless somebody wants to know; the editor does not.
extern void (*record_listener)(int number, std::size_t size);

/// Writes the events in use to the profile `path`. Returns 0 or errno. After an error an old
/// profile keeps its contents, and nothing of a new one is left, unless nothing but the flush of
/// the folder failed. A file of the service is refused (EPERM).
int SaveGroupProfile(const char* path, GroupEvent (&events)[event_count]);

/// Returns 1 on a machine that stores the most significant byte of a number first, otherwise 0.
int test_big_endian();

/// Returns the number with its two bytes exchanged.
std::uint16_t swap_word(std::uint16_t value);

/// Exchanges the bytes of every 16-bit number of an event; the texts stay.
void swap_event_data(GroupEvent& event);
