#include "config/ini_writer.h"

#include <charconv>
#include <cstdint>
#include <cstring>

#include "config/destination.h"

namespace {

/// Fits the usual files other than those of groups, so that formatting rarely needs more memory.
constexpr std::size_t usual_size = 32768;

void append_number(std::string& out, unsigned value) {
  char digits[12];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, static_cast<std::size_t>(end - digits));
}

std::string format_file(int file) {
  std::string out;
  out.reserve(usual_size);
  write_file_header(out);
  const auto* record = reinterpret_cast<const char*>(&INI);
  for (const Family& family : families_of(file)) write_family(out, family, record + family.offset);
  return out;
}

/// Stores in `INI` the defaults that the file has been written with.
void keep_defaults(int file) {
  auto* record = reinterpret_cast<char*>(&INI);
  for (const Family& family : families_of(file)) {
    if (family.defaults != nullptr) family.defaults(record + family.offset);
  }
}

}  // namespace

bool is_written(const Family& family, const void* entry) {
  if (!family.only_used) return true;
  const Field& first = family.fields[0];
  return first.kind == Kind::text ? !text_at(first, entry).empty() : number_at(first, entry) != 0;
}

void write_file_header(std::string& out) {
  out +=
      "; This is file with configuration parameters for KESTREL \n; Do not change any line !\n\n";
}

void write_section_header(std::string& out, const Family& family, int number) {
  out += '[';
  out += family.name;
  if (family.count != 0) {
    out += static_cast<char>('0' + number / 10);
    out += static_cast<char>('0' + number % 10);
  }
  out += "]\n";
}

void write_field(std::string& out, const Field& field, const void* entry) {
  out += field.key;
  if (field.kind == Kind::text) {
    out += "=\"";
    // Stops at the first line feed, which would start another line. Only a text from a group
    // profile can contain one.
    const std::string_view text = text_at(field, entry);
    out += text.substr(0, text.find('\n'));
    out += "\"\n";
  } else {
    out += '=';
    append_number(out, number_at(field, entry));
    out += '\n';
  }
}

void write_family(std::string& out, const Family& family, const void* entries) {
  each_written(family, entries, [&](int, int number, const char* entry) {
    // Large enough for every entry that has defaults.
    alignas(EmailConfig) char filled[sizeof(EmailConfig)];
    if (family.defaults != nullptr) {
      std::memcpy(filled, entry, family.size);
      family.defaults(filled);
      entry = filled;
    }
    write_section_header(out, family, number);
    for (const Field& field : family.fields) write_field(out, field, entry);
    out += '\n';
  });
}

int save_file(int file, const char* name) {
  const int error = put_file(name, format_file(file));
  if (error == 0) keep_defaults(file);
  return error;
}
