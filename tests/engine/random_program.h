// Random qv programs for running the engine two ways and comparing: every
// operator the engine computes, over every kind, with memories, clocks,
// first instants, instantaneous cycles through locals, operands of the
// wrong type, and clocks that may be nil.
#pragma once

#include <string>

/// The same seed gives the same program. Its node is
/// `n (c, d : bool; i, j : int; x, y : real; k : color; g : gear)`;
/// `color` is an enumeration (red, green, blue), `gear` a type with the
/// constants low and high.
std::string random_program(unsigned seed);
