// The evaluation item classes: a few templates over the value kinds and
// the operations of eval_ops.h, named one per operator and result kind.
#pragma once

#include <functional>

#include "engine/eval_item.h"
#include "engine/eval_ops.h"

/// An operand's value as kind `V` reads it, whatever kind the operand holds.
template <class V>
typename V::T read(const EvalItem& operand) {
  return V::get(operand.value_kind, operand.value);
}

inline bool is_true(const EvalItem& operand) {
  return read<BoolVal>(operand) != 0;
}

/// A constant: defined from the build on, again after every reset.
template <class V>
class ConstEI final : public EvalItem {
 public:
  explicit ConstEI(typename V::T x) : EvalItem(0, V::kind) {
    V::put(value, x);
    status = 0;
  }
  void reset() override { status = 0; }
  void compute(unsigned) override {}
};

/// An input: the front end writes its value field before each step.
template <class V>
class InputEI final : public EvalItem {
 public:
  InputEI() : EvalItem(0, V::kind) {}
  void compute(unsigned) override { status = 0; }

  /// String number of the input's name.
  int identifier = 0;
};

/// Operators that are undefined as soon as one operand is; the statuses of
/// the operands are ORed. `Op` may add the division-by-zero bit, and then
/// the value is kept too.
template <class Out, class In, class Op>
class StrictEI final : public EvalItem {
 public:
  explicit StrictEI(Op op = Op{}) : EvalItem(Op::arity, Out::kind), op(op) {}

  void compute(unsigned step) override {
    ensure_operands(step);
    unsigned st = 0;
    for (int i = 0; i < n_operands; ++i) st |= operands[i]->status;
    typename Out::T r{};
    if (st == 0) {
      if constexpr (Op::arity == 1) {
        st = op(read<In>(*operands[0]), r);
      } else {
        st = op(read<In>(*operands[0]), read<In>(*operands[1]), r);
      }
    }
    status = st;
    if (st == 0) Out::put(value, r);
  }

  Op op;
};

/// and, or, implies over three values: when one side is undefined, the
/// defined side decides if the result is the same whatever the other one
/// holds (false and nil is false); otherwise the undefined status is taken.
template <class Op>
class LogicEI final : public EvalItem {
 public:
  LogicEI() : EvalItem(2, VK_BOOL) {}

  void compute(unsigned step) override {
    ensure_operands(step);
    const EvalItem& a = *operands[0];
    const EvalItem& b = *operands[1];
    const Op op;
    if (a.status != 0 && b.status != 0) {
      status = a.status | b.status;
    } else if (a.status == 0 && b.status == 0) {
      define(op(is_true(a), is_true(b)));
    } else if (a.status == 0) {
      decide(op(is_true(a), false), op(is_true(a), true), b.status);
    } else {
      decide(op(false, is_true(b)), op(true, is_true(b)), a.status);
    }
  }

 private:
  void define(bool x) {
    value.i = x;
    status = 0;
  }
  void decide(bool if_false, bool if_true, unsigned unknown) {
    if (if_false == if_true) {
      define(if_false);
    } else {
      status = unknown;
    }
  }
};

/// Counts the true operands among any number (none included); undefined
/// when any operand is, with the statuses of the undefined ones ORed.
template <class Op>
class CountEI final : public EvalItem {
 public:
  explicit CountEI(int n) : EvalItem(n, VK_BOOL) {}

  void compute(unsigned step) override {
    ensure_operands(step);
    unsigned st = 0;
    int n_true = 0;
    for (int i = 0; i < n_operands; ++i) {
      st |= operands[i]->status;
      if (operands[i]->status == 0 && is_true(*operands[i])) ++n_true;
    }
    status = st;
    if (st == 0) value.i = Op{}(n_true);
  }
};

/// if c then t else e: all three are ensured, but only the chosen branch's
/// status counts.
template <class V>
class CondEI final : public EvalItem {
 public:
  CondEI() : EvalItem(3, V::kind) {}

  void compute(unsigned step) override {
    ensure_operands(step);
    const EvalItem& c = *operands[0];
    if (c.status != 0) {
      status = c.status;
      return;
    }
    const EvalItem& chosen = *operands[is_true(c) ? 1 : 2];
    status = chosen.status;
    if (status == 0) V::put(value, read<V>(chosen));
  }
};

/// An output or assertion: its value operand sampled on its clock operand.
/// While the clock is false the item is absent and keeps what it held.
template <class V>
class OutputEI final : public EvalItem {
 public:
  OutputEI() : EvalItem(2, V::kind) {}

  void compute(unsigned step) override {
    ensure_operands(step);
    const EvalItem& v = *operands[0];
    const EvalItem& c = *operands[1];
    check_clock(c);
    absent = !is_true(c);
    if (absent) return;
    status = v.status;
    if (status == 0) V::put(value, read<V>(v));
  }
  int is_bottom() override { return absent; }

  int absent = 0;
};

/// The memory of the last value its operand had while its clock was true.
template <class V>
class BlastEI final : public EvalItem {
 public:
  BlastEI() : EvalItem(2, V::kind) { demands_operands = false; }

  void reset() override { saved_status = ST_NIL; }
  void compute(unsigned) override {
    status = saved_status;
    if (status == 0) value = saved;
  }
  void compute_next(unsigned step) override { ensure_operands(step); }
  void rewrite() override {
    const EvalItem& v = *operands[0];
    const EvalItem& c = *operands[1];
    check_clock(c);
    if (!is_true(c)) return;
    saved_status = v.status;
    if (v.status == 0) V::put(saved, read<V>(v));
  }

  unsigned saved_status = ST_NIL;
  EvalValue saved{};
};

/// True up to and including the first step at which its clock is true.
class INIT_bool_EI final : public EvalItem {
 public:
  INIT_bool_EI() : EvalItem(1, VK_BOOL) { demands_operands = false; }

  void reset() override { first = 1; }
  void compute(unsigned) override {
    value.i = first;
    status = 0;
  }
  void compute_next(unsigned step) override {
    ensure_operands(step);
    check_clock(*operands[0]);
  }
  void rewrite() override {
    if (value.i) first = !is_true(*operands[0]);
  }

  int first = 1;
};

using CONST_bool_EI = ConstEI<BoolVal>;
using CONST_int_EI = ConstEI<IntVal>;
using CONST_double_EI = ConstEI<RealVal>;
using CONST_extern_EI = ConstEI<NameVal>;

using INPUT_bool_EI = InputEI<BoolVal>;
using INPUT_int_EI = InputEI<IntVal>;
using INPUT_double_EI = InputEI<RealVal>;
using INPUT_extern_EI = InputEI<NameVal>;

using NOT_bool_EI = StrictEI<BoolVal, BoolVal, Not>;
using AND_bool_EI = LogicEI<And>;
using OR_bool_EI = LogicEI<Or>;
using IMPL_bool_EI = LogicEI<Implies>;
using DIESE_bool_EI = CountEI<AtMostOne>;
using NOR_bool_EI = CountEI<NoneTrue>;

using Eq = Compare<std::equal_to>;
using Ne = Compare<std::not_equal_to>;
using EQ_bool_EI = StrictEI<BoolVal, BoolVal, Eq>;
using EQ_int_EI = StrictEI<BoolVal, IntVal, Eq>;
using EQ_double_EI = StrictEI<BoolVal, RealVal, Eq>;
using EQ_extern_EI = StrictEI<BoolVal, NameVal, Eq>;
using NE_bool_EI = StrictEI<BoolVal, BoolVal, Ne>;
using NE_int_EI = StrictEI<BoolVal, IntVal, Ne>;
using NE_double_EI = StrictEI<BoolVal, RealVal, Ne>;
using NE_extern_EI = StrictEI<BoolVal, NameVal, Ne>;

using LT_int_EI = StrictEI<BoolVal, IntVal, Compare<std::less>>;
using LE_int_EI = StrictEI<BoolVal, IntVal, Compare<std::less_equal>>;
using GT_int_EI = StrictEI<BoolVal, IntVal, Compare<std::greater>>;
using GE_int_EI = StrictEI<BoolVal, IntVal, Compare<std::greater_equal>>;
using LT_double_EI = StrictEI<BoolVal, RealVal, Compare<std::less>>;
using LE_double_EI = StrictEI<BoolVal, RealVal, Compare<std::less_equal>>;
using GT_double_EI = StrictEI<BoolVal, RealVal, Compare<std::greater>>;
using GE_double_EI = StrictEI<BoolVal, RealVal, Compare<std::greater_equal>>;

using PLUS_int_EI = StrictEI<IntVal, IntVal, Plus>;
using MINUS_int_EI = StrictEI<IntVal, IntVal, Minus>;
using TIMES_int_EI = StrictEI<IntVal, IntVal, Times>;
using DIV_int_EI = StrictEI<IntVal, IntVal, Divide>;
using MOD_int_EI = StrictEI<IntVal, IntVal, Modulo>;
using UMINUS_int_EI = StrictEI<IntVal, IntVal, Negate>;
using PLUS_double_EI = StrictEI<RealVal, RealVal, Plus>;
using MINUS_double_EI = StrictEI<RealVal, RealVal, Minus>;
using TIMES_double_EI = StrictEI<RealVal, RealVal, Times>;
using DIV_double_EI = StrictEI<RealVal, RealVal, Divide>;
using UMINUS_double_EI = StrictEI<RealVal, RealVal, Negate>;
using INT2REAL_double_EI = StrictEI<RealVal, IntVal, ToReal>;
using REAL2INT_int_EI = StrictEI<IntVal, RealVal, ToInt>;
using UFUNC_double_EI = StrictEI<RealVal, RealVal, UnaryFunction>;
using BFUNC_double_EI = StrictEI<RealVal, RealVal, BinaryFunction>;

using COND_bool_EI = CondEI<BoolVal>;
using COND_int_EI = CondEI<IntVal>;
using COND_double_EI = CondEI<RealVal>;
using COND_extern_EI = CondEI<NameVal>;

using OUTPUT_bool_EI = OutputEI<BoolVal>;
using OUTPUT_int_EI = OutputEI<IntVal>;
using OUTPUT_double_EI = OutputEI<RealVal>;
using OUTPUT_extern_EI = OutputEI<NameVal>;

using BLAST_bool_EI = BlastEI<BoolVal>;
using BLAST_int_EI = BlastEI<IntVal>;
using BLAST_double_EI = BlastEI<RealVal>;
using BLAST_extern_EI = BlastEI<NameVal>;
