#include "norm/net_norm.h"

namespace {

// AND and OR share their rules with the roles of the two answers swapped:
// a neutral operand gives the other one, an absorbing operand gives itself.
Exp* and_or(Exp* a, Exp* b, Exp* t, Exp* f, bool is_or) {
  if (a == t || b == f) return is_or ? a : b;
  if (a == f || b == t) return is_or ? b : a;
  return nullptr;
}

}  // namespace

// Folds the constants true and false out of Boolean operators. Every result
// is an operand or is requested through make, so it is simplified in turn.
// ORDER OP: the kinds with rules of their own.
Exp* NormNet::bool_simplify(OpKind kind, std::span<Exp* const> operands) {
  Exp* const t = true_exp;
  Exp* const f = false_exp;
  const auto is_const = [&](Exp* e) { return e == t || e == f; };
  switch (kind) {
    case NOT_n:
      if (operands[0] == t) return f;
      if (operands[0] == f) return t;
      return nullptr;
    case AND_n:
    case OR_n:
      return and_or(operands[0], operands[1], t, f, kind == OR_n);
    case XOR_n:
    case NEQ_n:
    case EQUAL_n: {
      Exp* a = operands[0];
      Exp* b = operands[1];
      if (!is_const(a) && !is_const(b)) return nullptr;
      if (type(a) != bool_type) return nullptr;
      // Equality is xor negated: the neutral and the negating constants swap.
      Exp* neutral = kind == EQUAL_n ? t : f;
      Exp* negating = kind == EQUAL_n ? f : t;
      if (a == neutral) return b;
      if (b == neutral) return a;
      if (a == negating) return make(NOT_n, b);
      return make(NOT_n, a);
    }
    case IMPL_n: {
      Exp* a = operands[0];
      Exp* b = operands[1];
      if (a == t || b == t) return b;
      if (a == f || b == f) return make(NOT_n, a);
      return nullptr;
    }
    case IF_n: {
      Exp* c = operands[0];
      Exp* a = operands[1];
      Exp* b = operands[2];
      if (c == t) return a;
      if (c == f) return b;
      if (a == t) return make(OR_n, c, b);
      if (a == f) return make(AND_n, make(NOT_n, c), b);
      if (b == t) return make(OR_n, make(NOT_n, c), a);
      if (b == f) return make(AND_n, c, a);
      return nullptr;
    }
    default:
      return nullptr;
  }
}
