// Input values read from text. The window's number fields and the batch
// runner's words both read through here, so that a text gives the same
// value, or the same refusal, in either front end.
#pragma once

#include <cstdint>
#include <string_view>

#include "engine/interface.h"

/// Reads as "%d" does: leading blanks skipped, an optional sign, anything
/// after the digits ignored. A number beyond 32 bits keeps its low 32 bits
/// instead of being undefined. False, leaving `value` alone, when the text
/// does not start with a number.
bool read_int(const char* text, int32_t* value);
/// Reads as "%lf" does, hexadecimal, infinities and NaN included. False,
/// leaving `value` alone, when the text does not start with a number.
bool read_real(const char* text, double* value);
/// Reads one word of a batch line into the port's value field: a bool as
/// t, f, 1 or 0, a number as above, a named value as the name of one of
/// the user constants of its type. False, leaving the field alone, otherwise.
bool read_word(const Port& port, std::string_view word);
