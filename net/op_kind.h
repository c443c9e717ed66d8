// The operator kinds of an expression node, and the one table that says
// what every stage needs to know about each: its operands, the type it
// gives, whether its operands commute, and how the evaluation graph
// builder picks its item class. The stages read the table through the
// accessors at the end; nothing tests a kind by its number.
//
// Grep "ORDER OP" if you change this enum: every table indexed by a kind
// and every switch that still decides kind by kind carries the marker.
#pragma once

// ORDER OP: kOpTable and the engine's kItemClasses follow this order.
enum OpKind {
  ERROR_n,     // blank placeholder, filled later by NetCtr::update
  CONST_n,     // constant, literal
  INPUT_n,     // input
  QVREF_n,     // output or local
  MODELREF_n,  // leaf printed by its identifier
  PRE_n,
  CURRENT_n,
  NOT_n,
  UMINUS_n,
  LAST_n,  // memory of the last non-bottom value (normal form)
  INIT_n,  // first-instant flag (normal form)
  ARROW_n,
  WHEN_n,
  AND_n,
  OR_n,
  XOR_n,
  IMPL_n,
  EQUAL_n,
  NEQ_n,
  GTE_n,
  GT_n,
  LTE_n,
  LT_n,
  DIV_n,
  MOD_n,
  MINUS_n,
  PLUS_n,
  SLASH_n,
  TIMES_n,
  POWER_n,
  IF_n,  // condition, then, else
  TUPLE_n,
  NOR_n,
  DIESE_n,
  RCL_n,   // rational linear combination
  ICL_n,   // integer linear combination
  PROJ_n,  // member `param` of a tuple
  CALL_n,  // call of function `param`
  N_OPKINDS
};

/// The operands of a kind: how many, and so how it is printed, hashed into
/// the node table and checked when made.
enum OpArity {
  AR_BLANK,   // none; nothing prints or hashes the placeholder
  AR_LEAF,    // none; printed by its identifier
  AR_UNARY,   // one; printed "symbol(x)"
  AR_BINARY,  // two; printed "(x)symbol(y)"
  AR_IF,      // three: condition, then, else
  AR_NARY,    // any number; printed "symbol(x, y, ...)"
  AR_PARAM,   // one, and `param`, which equivalent nodes share
  AR_LINEAR,  // any number, with coefficients and a constant
};

/// The type of a node's value (Net::type), and so the operands it waits for.
enum TypeRule {
  TY_DECLARED,  // given when the leaf is made
  TY_BOOL,      // bool, whatever the operands
  TY_OPERAND0,  // that of operand 0
  TY_THEN,      // that of the then branch, operand 1
  TY_INT,
  TY_REAL,
  TY_RESULT,  // the called function's declared result
  TY_TUPLE,   // the tuple of the operands' types
  TY_MEMBER,  // member `param` of operand 0's tuple type
};

/// How the evaluation graph builder makes a node's item. The engine keeps
/// the item classes of each kind in a table indexed by OpKind.
enum EvalBuild {
  EV_NONE,      // no item: the builder refuses the node
  EV_CONSTANT,  // from the constant's declaration or literal
  EV_INPUT,     // a class of the engine's table, given the input's identifier
  EV_CLASSES,   // a class of the engine's table over the node's operands
  EV_MEMORY,    // a class of the engine's table over the value and the clock
                // of the held operand; a state item once these are built
  EV_FIRST,     // a class of the engine's table; a state item (the
                // first-instant flag) from the moment it is made
  EV_CALL,      // the class of the library function called
};

/// Whose type chooses among the kind's classes in the engine's table.
enum EvalDecider { BY_SELF, BY_FIRST, BY_SECOND };

struct OpInfo {
  /// The row's own kind: rows are in enum order (checked in op_kind.cc).
  OpKind kind;
  /// Used in messages: "PLUS_n".
  const char* name;
  /// Printed in source: "+"; "" for the kinds printed otherwise.
  const char* symbol;
  OpArity arity;
  TypeRule type;
  /// (a op b) and (b op a) are the same node to the minimal network.
  bool commutes;
  EvalBuild build;
  EvalDecider by;
  /// Types other than bool, int and real get an `_extern` class, which
  /// carries the type's name.
  bool extern_other;
};

// ORDER OP: one row per OpKind, in enum order.
// clang-format off
inline constexpr OpInfo kOpTable[] = {
  // kind      name          symbol     arity      type          comm build        by         extern
  {ERROR_n,    "ERROR_n",    "",        AR_BLANK,  TY_DECLARED,  0,   EV_NONE,     BY_SELF,   0},
  {CONST_n,    "CONST_n",    "",        AR_LEAF,   TY_DECLARED,  0,   EV_CONSTANT, BY_SELF,   0},
  {INPUT_n,    "INPUT_n",    "",        AR_LEAF,   TY_DECLARED,  0,   EV_INPUT,    BY_SELF,   1},
  {QVREF_n,    "QVREF_n",    "",        AR_LEAF,   TY_DECLARED,  0,   EV_NONE,     BY_SELF,   0},
  {MODELREF_n, "MODELREF_n", "",        AR_LEAF,   TY_DECLARED,  0,   EV_NONE,     BY_SELF,   0},
  {PRE_n,      "PRE_n",      "pre",     AR_UNARY,  TY_OPERAND0,  0,   EV_NONE,     BY_SELF,   0},
  {CURRENT_n,  "CURRENT_n",  "current", AR_UNARY,  TY_OPERAND0,  0,   EV_NONE,     BY_SELF,   0},
  {NOT_n,      "NOT_n",      "not",     AR_UNARY,  TY_OPERAND0,  0,   EV_CLASSES,  BY_SELF,   0},
  {UMINUS_n,   "UMINUS_n",   "-",       AR_UNARY,  TY_OPERAND0,  0,   EV_CLASSES,  BY_SELF,   0},
  {LAST_n,     "LAST_n",     "last",    AR_UNARY,  TY_OPERAND0,  0,   EV_MEMORY,   BY_SELF,   1},
  {INIT_n,     "INIT_n",     "init",    AR_UNARY,  TY_OPERAND0,  0,   EV_FIRST,    BY_SELF,   0},
  {ARROW_n,    "ARROW_n",    "->",      AR_BINARY, TY_OPERAND0,  0,   EV_NONE,     BY_SELF,   0},
  {WHEN_n,     "WHEN_n",     "when",    AR_BINARY, TY_OPERAND0,  0,   EV_NONE,     BY_SELF,   0},
  {AND_n,      "AND_n",      "and",     AR_BINARY, TY_OPERAND0,  1,   EV_CLASSES,  BY_SELF,   0},
  {OR_n,       "OR_n",       "or",      AR_BINARY, TY_OPERAND0,  1,   EV_CLASSES,  BY_SELF,   0},
  {XOR_n,      "XOR_n",      "xor",     AR_BINARY, TY_OPERAND0,  1,   EV_CLASSES,  BY_SELF,   0},
  {IMPL_n,     "IMPL_n",     "=>",      AR_BINARY, TY_OPERAND0,  0,   EV_CLASSES,  BY_SELF,   0},
  {EQUAL_n,    "EQUAL_n",    "=",       AR_BINARY, TY_BOOL,      1,   EV_CLASSES,  BY_SECOND, 1},
  {NEQ_n,      "NEQ_n",      "<>",      AR_BINARY, TY_BOOL,      1,   EV_CLASSES,  BY_SECOND, 1},
  {GTE_n,      "GTE_n",      ">=",      AR_BINARY, TY_BOOL,      0,   EV_CLASSES,  BY_FIRST,  0},
  {GT_n,       "GT_n",       ">",       AR_BINARY, TY_BOOL,      0,   EV_CLASSES,  BY_FIRST,  0},
  {LTE_n,      "LTE_n",      "<=",      AR_BINARY, TY_BOOL,      0,   EV_CLASSES,  BY_FIRST,  0},
  {LT_n,       "LT_n",       "<",       AR_BINARY, TY_BOOL,      0,   EV_CLASSES,  BY_FIRST,  0},
  {DIV_n,      "DIV_n",      "div",     AR_BINARY, TY_OPERAND0,  0,   EV_CLASSES,  BY_SELF,   0},
  {MOD_n,      "MOD_n",      "mod",     AR_BINARY, TY_OPERAND0,  0,   EV_CLASSES,  BY_SELF,   0},
  {MINUS_n,    "MINUS_n",    "-",       AR_BINARY, TY_OPERAND0,  0,   EV_CLASSES,  BY_SELF,   0},
  {PLUS_n,     "PLUS_n",     "+",       AR_BINARY, TY_OPERAND0,  1,   EV_CLASSES,  BY_SELF,   0},
  {SLASH_n,    "SLASH_n",    "/",       AR_BINARY, TY_OPERAND0,  0,   EV_CLASSES,  BY_SELF,   0},
  {TIMES_n,    "TIMES_n",    "*",       AR_BINARY, TY_OPERAND0,  1,   EV_CLASSES,  BY_SELF,   0},
  {POWER_n,    "POWER_n",    "**",      AR_BINARY, TY_OPERAND0,  0,   EV_NONE,     BY_SELF,   0},
  {IF_n,       "IF_n",       "if",      AR_IF,     TY_THEN,      0,   EV_CLASSES,  BY_SELF,   1},
  {TUPLE_n,    "TUPLE_n",    "",        AR_NARY,   TY_TUPLE,     0,   EV_NONE,     BY_SELF,   0},
  {NOR_n,      "NOR_n",      "nor",     AR_NARY,   TY_BOOL,      0,   EV_CLASSES,  BY_SELF,   0},
  {DIESE_n,    "DIESE_n",    "#",       AR_NARY,   TY_BOOL,      0,   EV_CLASSES,  BY_SELF,   0},
  {RCL_n,      "RCL_n",      "",        AR_LINEAR, TY_REAL,      0,   EV_NONE,     BY_SELF,   0},
  {ICL_n,      "ICL_n",      "",        AR_LINEAR, TY_INT,       0,   EV_NONE,     BY_SELF,   0},
  {PROJ_n,     "PROJ_n",     "",        AR_PARAM,  TY_MEMBER,    0,   EV_NONE,     BY_SELF,   0},
  {CALL_n,     "CALL_n",     "",        AR_PARAM,  TY_RESULT,    0,   EV_CALL,     BY_SELF,   0},
};
// clang-format on

static_assert(sizeof kOpTable / sizeof kOpTable[0] == N_OPKINDS, "one row per OpKind");

/// Name used in messages ("PLUS_n"); "?" for a number that is no kind.
const char* op_name(int kind);
/// Symbol used when printing source ("+"); "" for the kinds printed
/// otherwise and for a number that is no kind.
const char* op_symbol(int kind);

inline OpArity op_arity(OpKind kind) { return kOpTable[kind].arity; }
inline TypeRule op_type_rule(OpKind kind) { return kOpTable[kind].type; }
inline bool op_commutes(OpKind kind) { return kOpTable[kind].commutes; }
inline EvalBuild op_eval_build(OpKind kind) { return kOpTable[kind].build; }
inline EvalDecider op_eval_decider(OpKind kind) { return kOpTable[kind].by; }
inline bool op_extern_other(OpKind kind) { return kOpTable[kind].extern_other; }

/// The operand count of every node of an arity class; -1 for any count.
constexpr int operand_count(OpArity arity) {
  switch (arity) {
    case AR_UNARY:
    case AR_PARAM:
      return 1;
    case AR_BINARY:
      return 2;
    case AR_IF:
      return 3;
    case AR_NARY:
    case AR_LINEAR:
      return -1;
    case AR_BLANK:
    case AR_LEAF:
      break;
  }
  return 0;
}
inline int op_operand_count(OpKind kind) { return operand_count(kOpTable[kind].arity); }
