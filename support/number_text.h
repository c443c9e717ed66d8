// Numbers read from text as the C library's scanf conversions read them,
// for program literals and for input values alike.
#pragma once

#include <cstdint>

/// Reads as "%d" does: leading blanks skipped, an optional sign, anything
/// after the digits ignored. A number beyond 32 bits keeps its low 32 bits
/// instead of being undefined. False, leaving `value` alone, when the text
/// does not start with a number.
bool read_int(const char* text, int32_t* value);
/// Reads as "%lf" does, hexadecimal, infinities and NaN included. False,
/// leaving `value` alone, when the text does not start with a number.
bool read_real(const char* text, double* value);
