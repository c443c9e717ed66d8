// Warnings about a program that loads and runs, but reads some value as a
// kind other than its type, as its author probably did not mean.
#pragma once

#include <vector>

class Net;
struct Exp;

/// An equation (or assertion) of the program and where it was read.
struct EquationPlace {
  /// The defined variable (the first one of a tuple equation); 0 for an
  /// assertion.
  int name;
  /// The right-hand side, or the asserted expression.
  Exp* expression;
  int line;
};

/// Warns, once per operator, where an item will read an operand of another
/// kind than the operand's type, and where a call's arguments differ from
/// the function's declaration. Runs once every equation has been read, so
/// the types are those the evaluation graph will be built with.
void check_operand_kinds(Net& net, const char* file, const std::vector<EquationPlace>& equations);
