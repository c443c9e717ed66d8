// The 38 operator kinds of an expression node. Several stages test kinds by
// numeric range (unary 5-10, binary 11-29, IF 30, n-ary 31-33), so the order
// is fixed: grep ORDER OP if you change this enum, and move kOpTable with it.
#pragma once

enum OpKind {
  ERROR_n,     // placeholder, filled later by NetCtr::update
  CONST_n,     // leaf: constant, literal
  INPUT_n,     // leaf: input
  QVREF_n,     // leaf: output or local
  MODELREF_n,  // leaf printed by its identifier
  PRE_n,       // unary ...
  CURRENT_n,
  NOT_n,
  UMINUS_n,
  LAST_n,  // memory of the last non-bottom value (normal form)
  INIT_n,  // first-instant flag (normal form)
  ARROW_n,  // binary ...
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
  IF_n,     // condition, then, else
  TUPLE_n,  // n-ary ...
  NOR_n,
  DIESE_n,
  RCL_n,   // rational linear combination
  ICL_n,   // integer linear combination
  PROJ_n,  // member `param` of a tuple
  CALL_n,  // call of function `param`
  N_OPKINDS
};

/// Name used in messages ("PLUS_n").
const char* op_name(int kind);
/// Symbol used when printing source ("+"), "" for kinds printed otherwise.
const char* op_symbol(int kind);

inline bool is_leaf_kind(int k) { return k >= CONST_n && k <= MODELREF_n; }
inline bool is_unary_kind(int k) { return k >= PRE_n && k <= INIT_n; }
inline bool is_binary_kind(int k) { return k >= ARROW_n && k <= POWER_n; }
inline bool is_nary_kind(int k) { return k >= TUPLE_n && k <= DIESE_n; }
