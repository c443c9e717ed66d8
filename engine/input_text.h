// Input values read from text. The window's number fields and the batch
// runner's words both read through here, so that a text gives the same
// value, or the same refusal, in either front end.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/interface.h"
#include "support/number_text.h"

/// Reads one word of a batch line into the port's value field: a bool as
/// t, f, 1 or 0, a number as read_int and read_real read it, a named value
/// as the name of one of the user constants of its type. False, leaving the
/// field alone, otherwise.
bool read_word(const Port& port, std::string_view word);
