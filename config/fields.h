#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "config/record.h"

/// One row says where a value lies and what it is: the reader, the writers and the screens all use
/// the same rows, and nothing else knows an offset. `config/families.cpp` holds those of the files.

enum class Kind : std::uint8_t {
  text,   // zero-filled, quoted in the file
  u8,     // unsigned, 8 bits
  u16,    // unsigned, 16 bits
  low_u8  // 16 bits of which loading fills the low 8 only
};

/// One value of an entry.
struct Field {
  const char* key = nullptr;  // as it is spelled in the file
  Kind kind = Kind::u8;
  std::uint32_t offset = 0;  // bytes from the start of the entry
  std::uint32_t width = 0;   // bytes in the entry
  bool is_switch = false;    // 0 or 1
};

template <typename T>
inline constexpr bool is_text = false;
template <std::size_t N>
inline constexpr bool is_text<Text<N>> = true;

/// The kind of a member of type `T`, which may be a reference to an element of an array.
template <typename T>
consteval Kind kind_of() {
  using Value = std::remove_reference_t<T>;
  constexpr bool is_u8 = std::is_same_v<Value, std::uint8_t>;
  constexpr bool is_u16 = std::is_same_v<Value, std::uint16_t>;
  static_assert(is_u8 || is_u16 || is_text<Value>, "no file can hold a value of this type");
  return is_u8 ? Kind::u8 : is_u16 ? Kind::u16 : Kind::text;
}

/// What follows the last dot of `path`, or all of it when there is none.
consteval const char* last_name(const char* path) {
  const char* name = path;
  for (; *path != '\0'; ++path) {
    if (*path == '.') name = path + 1;
  }
  return name;
}

/// The member `path` of struct `Entry`, stored under the key `key`.
#define KEYED_FIELD(Entry, path, key) \
  Field { key, kind_of<decltype(Entry::path)>(), offsetof(Entry, path), sizeof(Entry::path) }

/// The member `path` of struct `Entry`, stored under the key of the same name. The member may lie
/// in a block of the entry: `FIELD(Record, network.Port)` has the key "Port".
#define FIELD(Entry, path) KEYED_FIELD(Entry, path, last_name(#path))

/// A 16-bit field of which loading fills the low 8 bits only: a switch of a job, or a condition.
consteval Field low_byte(Field field) {
  if (field.kind != Kind::u16) throw "only a 16-bit field has a low byte";
  field.kind = Kind::low_u8;
  return field;
}

/// A number that is a switch.
consteval Field on_off(Field field) {
  if (field.kind == Kind::text) throw "a switch is a number";
  field.is_switch = true;
  return field;
}

/// Returns a text field as far as it is filled. `entry` is the start of the entry that holds it.
std::string_view text_at(const Field& field, const void* entry);

/// Returns the bytes of a text field, `field.width` of them.
char* bytes_at(const Field& field, void* entry);

/// Returns the value of a number field.
unsigned number_at(const Field& field, const void* entry);

/// Stores a number, cut to the field's width.
void set_number_at(const Field& field, void* entry, unsigned value);
