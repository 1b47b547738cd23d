#pragma once

/// The system parameters: identification, language, logging, and the way to the network parameters.
void main_param();

/// `language_name` is the display name of the present language.
void print_main_param(const char* language_name, int selected);
