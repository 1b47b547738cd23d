#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "config/record.h"

/// One row says where a value lies and what it is: the reader, the writers and the screens all use
/// the same rows, and nothing else knows an offset. `config/families.cpp` holds the rows.

enum class Kind : std::uint8_t {
  text,   // zero-filled, quoted in the file
  u8,     // unsigned, 8 bits
  u16,    // unsigned, 16 bits
  low_u8  // 16 bits of which loading fills the low 8 only: the switches of a job
};

/// One value of an entry.
struct Field {
  const char* key = nullptr;  // as it is spelled in the file
  Kind kind = Kind::u8;
  std::uint32_t offset = 0;  // bytes from the start of the entry
  std::uint16_t width = 0;   // bytes in the entry
};

template <typename T>
consteval Kind kind_of() {
  if constexpr (std::is_same_v<T, std::uint8_t>)
    return Kind::u8;
  else if constexpr (std::is_same_v<T, std::uint16_t>)
    return Kind::u16;
  else
    return Kind::text;
}

consteval const char* key_of(const char* name) {
  const char* key = name;
  for (; *name != '\0'; ++name) {
    if (*name == '.') key = name + 1;
  }
  return key;
}

/// The field `name` of struct `Entry`, stored under the key of the same name.
#define FIELD(Entry, name)                                                                      \
  Field {                                                                                       \
    key_of(#name), kind_of<decltype(Entry::name)>(), offsetof(Entry, name), sizeof(Entry::name) \
  }

/// The same, counted from the start of the record: for screens that edit one block of it.
#define RECORD_FIELD(block, name)                                                   \
  Field {                                                                           \
#name, kind_of < decltype(Record::block.name)>(), offsetof(Record, block.name), \
        sizeof(Record::block.name)                                                  \
  }

/// A text field as far as it is filled. `entry` is the start of the entry that holds it.
std::string_view text_at(const Field& field, const void* entry);

/// The bytes of a text field, `field.width` of them.
char* bytes_at(const Field& field, void* entry);

/// A number field, whatever its width.
unsigned number_at(const Field& field, const void* entry);

/// Stores a number, cut to the field's width.
void set_number_at(const Field& field, void* entry, unsigned value);
