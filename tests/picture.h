#pragma once

#include "tests/operator.h"

/// Compares the screen with a picture of the documents, docs/pictures/NAME.svg. With
/// HARRIER_PICTURES=draw in the environment the picture is drawn anew before.
void expect_picture(Operator& op, const std::string& name);
