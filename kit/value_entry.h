#pragma once

#include <cstddef>
#include <string_view>

#include "lang/text_ids.h"

/// The screens on which a value is entered: a frame with the label, the present value, and a
/// question in line mode. Leaving them always returns to single-key mode with the cursor hidden.

/// Edits a text in place. `size` is the width of the field in bytes; `get_str` says what is stored.
void edit_text_field(text::Id label, char* bytes, std::size_t size);

/// Asks for a number. Returns it, or `current` when the entry is refused or empty. `prompt_end`
/// stands after the bounds.
unsigned edit_number(text::Id label, unsigned current, unsigned low, unsigned high,
                     const char* prompt_end = "\t");

/// Asks for the name of an entry of a list, as `ask_line` does. In place of the rule there are two
/// hints: text 336, and `deletion_hint`, which says how to delete the entry.
void ask_name(text::Id label, std::string_view current, text::Id deletion_hint, char* bytes,
              std::size_t size);

/// Asks for a text whose present value is shown as `current`.
void ask_text(text::Id label, std::string_view current, char* bytes, std::size_t size);

/// Asks for a line after `prompt`, as `get_str` does, on whatever screen there is.
void ask_line(char* bytes, std::size_t size, const char* prompt);

/// Hides the cursor and restores the colour after a question.
void end_entry();

/// Rings, and shows a message for two seconds.
void show_refusal(text::Id message);
