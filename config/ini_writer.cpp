#include "config/ini_writer.h"

#include <charconv>
#include <cstdint>
#include <cstring>

#include "config/replace_file.h"
#include "tui/diag.h"

namespace {

/// Big enough for the largest file that is not a group's, so that formatting rarely grows it.
constexpr std::size_t usual_size = 32768;

void append_number(std::string& out, unsigned value) {
  char digits[12];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, static_cast<std::size_t>(end - digits));
}

bool in_use(const Field& first, const void* entry) {
  return first.kind == Kind::text ? !text_at(first, entry).empty() : number_at(first, entry) != 0;
}

}  // namespace

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
    // A group profile may hold any bytes; a line end among them would start a line of its own.
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
  int number = 0;
  for (int i = 0; i < family.stored; ++i) {
    const char* entry =
        static_cast<const char*>(entries) + static_cast<std::size_t>(i) * family.size;
    if (family.only_used && !in_use(family.fields[0], entry)) continue;
    alignas(std::uint64_t) char filled[sizeof(EmailConfig)];  // the largest entry with defaults
    if (family.defaults != nullptr) {
      std::memcpy(filled, entry, family.size);
      family.defaults(filled);
      entry = filled;
    }
    write_section_header(out, family, number++);
    for (const Field& field : family.fields) write_field(out, field, entry);
    out += '\n';
  }
}

int save_file(int kind, const char* name) {
  std::string out;
  out.reserve(usual_size);
  write_file_header(out);
  auto* record = reinterpret_cast<char*>(&INI);
  for (const Family& family : families_of(kind)) write_family(out, family, record + family.offset);
  const int error = replace_file(program_path(name), out);
  if (error != 0) return error;
  for (const Family& family : families_of(kind)) {
    if (family.defaults != nullptr) family.defaults(record + family.offset);
  }
  return 0;
}
