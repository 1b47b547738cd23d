#pragma once

#include <string>

/// What the command says about its classes.

/// Prints a line for each class: name, level, group, and the form of its sentence.
void put_list();

/// Prints the explanation of a class. Returns 0, or EINVAL after a sentence on standard error when
/// there is no such class.
int put_explanation(const std::string& name);
