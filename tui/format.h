#pragma once

#include <cstdarg>
#include <string>

/// Formats as printf does, a text of any length.
std::string format(const char* form, ...) __attribute__((format(printf, 1, 2)));

/// Appends to `out` what vprintf would print.
void append_format(std::string& out, const char* form, va_list arguments)
    __attribute__((format(printf, 2, 0)));
