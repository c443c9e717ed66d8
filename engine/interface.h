// The loaded program's inputs and outputs as the front ends see them: what
// each value field holds and, for declared types, which constant names it
// may take. Both front ends decide from this alone, through
// engine/offered_ports.h, which variables they can show or read.
#pragma once

#include <vector>

#include "engine/eval_value.h"

class SimProgram;

/// What a variable's value field holds.
enum class PortKind {
  kBool,
  kInt,
  kReal,
  /// The name of a constant of a declared (enumerated or extern) type.
  kNamed,
};

/// One input or output of the node.
struct Port {
  /// The variable's name.
  const char* name;
  PortKind kind;
  /// The name of the variable's type; "tuple" for a type without one.
  const char* type_name;
  /// Declared in the program, not predefined or a tuple.
  bool declared;
  /// The names of the user constants declared with the type, in
  /// declaration order: the interned texts the engine's values hold, so a
  /// choice compares as a pointer. An enumeration's own names are not
  /// among them; no front end offers those.
  std::vector<const char*> constants;
  /// The value field of the variable's evaluation item.
  EvalValue* value;
};

struct ProgramInterface {
  /// Both in declaration order.
  std::vector<Port> inputs;
  std::vector<Port> outputs;
};

/// Reads the built program; writes nothing and refuses nothing.
ProgramInterface describe_interface(SimProgram& program);
