// What the evaluation item templates are parameterised by: how a value kind
// sits in the value field, and the operations of the strict classes. An
// operation stores its result and returns the status bits it adds (0, or
// ST_DIV_ZERO); it is only called on defined operands.
#pragma once

#include <cstdint>

#include "engine/eval_value.h"

// Value kinds -------------------------------------------------------------

struct BoolVal {
  using T = int32_t;
  static constexpr int kind = VK_BOOL;
  static T get(int held, const EvalValue& v) { return as_int(held, v); }
  static void put(EvalValue& v, T x) { v.i = x; }
};

struct IntVal {
  using T = int32_t;
  static constexpr int kind = VK_INT;
  static T get(int held, const EvalValue& v) { return as_int(held, v); }
  static void put(EvalValue& v, T x) { v.i = x; }
};

struct RealVal {
  using T = double;
  static constexpr int kind = VK_REAL;
  static T get(int held, const EvalValue& v) { return as_real(held, v); }
  static void put(EvalValue& v, T x) { v.d = x; }
};

/// Enumerated and extern values: interned name texts, equal when the
/// pointers are.
struct NameVal {
  using T = const char*;
  static constexpr int kind = VK_EXTERN;
  static T get(int held, const EvalValue& v) { return as_name(held, v); }
  static void put(EvalValue& v, T x) { v.s = x; }
};

// Operations --------------------------------------------------------------

/// 32-bit arithmetic wraps: it is done on unsigned values, whose overflow
/// is defined, and brought back to signed (modular since C++20).
inline int32_t wrap(uint32_t x) {
  return static_cast<int32_t>(x);
}

struct Not {
  static constexpr int arity = 1;
  unsigned operator()(int32_t a, int32_t& r) const {
    r = !a;
    return 0;
  }
};

/// A comparison on any value kind, with the result as a bool 0 or 1. On
/// doubles it is IEEE: every comparison with a NaN but != is false.
template <template <class> class Cmp>
struct Compare {
  static constexpr int arity = 2;
  template <class T>
  unsigned operator()(T a, T b, int32_t& r) const {
    r = Cmp<T>{}(a, b);
    return 0;
  }
};

struct Plus {
  static constexpr int arity = 2;
  unsigned operator()(int32_t a, int32_t b, int32_t& r) const {
    r = wrap(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
    return 0;
  }
  unsigned operator()(double a, double b, double& r) const {
    r = a + b;
    return 0;
  }
};

struct Minus {
  static constexpr int arity = 2;
  unsigned operator()(int32_t a, int32_t b, int32_t& r) const {
    r = wrap(static_cast<uint32_t>(a) - static_cast<uint32_t>(b));
    return 0;
  }
  unsigned operator()(double a, double b, double& r) const {
    r = a - b;
    return 0;
  }
};

struct Times {
  static constexpr int arity = 2;
  unsigned operator()(int32_t a, int32_t b, int32_t& r) const {
    r = wrap(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
    return 0;
  }
  unsigned operator()(double a, double b, double& r) const {
    r = a * b;
    return 0;
  }
};

/// Integer division truncates toward zero. The smallest int divided by -1
/// has no 32-bit quotient: it gives the smallest int again, the quotient
/// wrapped like every other overflow, so that division by -1 is negation
/// in all cases. A zero divisor of either kind is a division by zero (the
/// sign of a real zero does not matter; a NaN divisor divides).
struct Divide {
  static constexpr int arity = 2;
  unsigned operator()(int32_t a, int32_t b, int32_t& r) const {
    if (b == 0) return ST_DIV_ZERO;
    r = b == -1 ? wrap(0u - static_cast<uint32_t>(a)) : a / b;
    return 0;
  }
  unsigned operator()(double a, double b, double& r) const {
    if (b == 0.0) return ST_DIV_ZERO;
    r = a / b;
    return 0;
  }
};

/// The remainder of the truncating division, with the sign of the dividend.
/// Any int modulo -1 is 0, the smallest int included, which keeps
/// a = (a div b) * b + (a mod b) under wrapping.
struct Modulo {
  static constexpr int arity = 2;
  unsigned operator()(int32_t a, int32_t b, int32_t& r) const {
    if (b == 0) return ST_DIV_ZERO;
    r = b == -1 ? 0 : a % b;
    return 0;
  }
};

struct Negate {
  static constexpr int arity = 1;
  unsigned operator()(int32_t a, int32_t& r) const {
    r = wrap(0u - static_cast<uint32_t>(a));
    return 0;
  }
  unsigned operator()(double a, double& r) const {
    r = -a;
    return 0;
  }
};

struct ToReal {
  static constexpr int arity = 1;
  unsigned operator()(int32_t a, double& r) const {
    r = a;
    return 0;
  }
};

/// Truncation toward zero. A NaN or a real beyond the int range has no int
/// to truncate to: it gives the smallest int, as the hardware's truncating
/// conversion does, instead of undefined behaviour.
struct ToInt {
  static constexpr int arity = 1;
  unsigned operator()(double a, int32_t& r) const {
    r = a > -2147483649.0 && a < 2147483648.0 ? static_cast<int32_t>(a) : INT32_MIN;
    return 0;
  }
};

/// A library function chosen when the graph is built.
struct UnaryFunction {
  static constexpr int arity = 1;
  double (*function)(double) = nullptr;
  unsigned operator()(double a, double& r) const {
    r = function(a);
    return 0;
  }
};

struct BinaryFunction {
  static constexpr int arity = 2;
  double (*function)(double, double) = nullptr;
  unsigned operator()(double a, double b, double& r) const {
    r = function(a, b);
    return 0;
  }
};

// The Boolean connectives of the three-valued classes, on defined values.
struct And {
  bool operator()(bool a, bool b) const { return a && b; }
};
struct Or {
  bool operator()(bool a, bool b) const { return a || b; }
};
struct Implies {
  bool operator()(bool a, bool b) const { return !a || b; }
};

/// A connective over three values, given each side's status and truth:
/// when one side is undefined, the defined side decides if the result is
/// the same whatever the other one holds (false and nil is false);
/// otherwise the undefined status is taken, both ORed when both sides are
/// undefined. Returns the status, and sets `r` when it is 0.
template <class Op>
unsigned three_valued(unsigned sa, bool a, unsigned sb, bool b, int32_t& r) {
  const Op op;
  if (sa != 0 && sb != 0) return sa | sb;
  if (sa == 0 && sb == 0) {
    r = op(a, b);
    return 0;
  }
  const bool if_false = sa == 0 ? op(a, false) : op(false, b);
  const bool if_true = sa == 0 ? op(a, true) : op(true, b);
  if (if_false != if_true) return sa | sb;
  r = if_false;
  return 0;
}

// The n-ary classes, on the count of true operands.
struct AtMostOne {
  bool operator()(int n_true) const { return n_true < 2; }
};
struct NoneTrue {
  bool operator()(int n_true) const { return n_true == 0; }
};
