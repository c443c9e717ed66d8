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

/// The schedule's operation of a class over kind `V`: bool and int share one.
template <class V>
constexpr StepOp by_kind(StepOp on_int, StepOp on_real, StepOp on_name) {
  if constexpr (V::kind == VK_REAL) return on_real;
  if constexpr (V::kind == VK_EXTERN) return on_name;
  return on_int;
}

/// The schedule's operation of a strict class, by operation and operand kind.
template <class Op, class In>
constexpr StepOp kStrictOp = OP_NONE;
template <template <class> class Cmp, class In>
constexpr StepOp kCompareOp = OP_NONE;
template <template <class> class Cmp, class In>
constexpr StepOp kStrictOp<Compare<Cmp>, In> = kCompareOp<Cmp, In>;

template <class In>
constexpr StepOp kCompareOp<std::equal_to, In> = by_kind<In>(OP_EQ_I, OP_EQ_R, OP_EQ_N);
template <class In>
constexpr StepOp kCompareOp<std::not_equal_to, In> = by_kind<In>(OP_NE_I, OP_NE_R, OP_NE_N);
template <class In>
constexpr StepOp kCompareOp<std::less, In> = by_kind<In>(OP_LT_I, OP_LT_R, OP_NONE);
template <class In>
constexpr StepOp kCompareOp<std::less_equal, In> = by_kind<In>(OP_LE_I, OP_LE_R, OP_NONE);
template <class In>
constexpr StepOp kCompareOp<std::greater, In> = by_kind<In>(OP_GT_I, OP_GT_R, OP_NONE);
template <class In>
constexpr StepOp kCompareOp<std::greater_equal, In> = by_kind<In>(OP_GE_I, OP_GE_R, OP_NONE);
template <class In>
constexpr StepOp kStrictOp<Plus, In> = by_kind<In>(OP_ADD_I, OP_ADD_R, OP_NONE);
template <class In>
constexpr StepOp kStrictOp<Minus, In> = by_kind<In>(OP_SUB_I, OP_SUB_R, OP_NONE);
template <class In>
constexpr StepOp kStrictOp<Times, In> = by_kind<In>(OP_MUL_I, OP_MUL_R, OP_NONE);
template <class In>
constexpr StepOp kStrictOp<Divide, In> = by_kind<In>(OP_DIV_I, OP_DIV_R, OP_NONE);
template <class In>
constexpr StepOp kStrictOp<Negate, In> = by_kind<In>(OP_NEG_I, OP_NEG_R, OP_NONE);
template <>
inline constexpr StepOp kStrictOp<Not, BoolVal> = OP_NOT;
template <>
inline constexpr StepOp kStrictOp<Modulo, IntVal> = OP_MOD_I;
template <>
inline constexpr StepOp kStrictOp<ToReal, IntVal> = OP_INT_TO_REAL;
template <>
inline constexpr StepOp kStrictOp<ToInt, RealVal> = OP_REAL_TO_INT;
template <>
inline constexpr StepOp kStrictOp<UnaryFunction, RealVal> = OP_UNARY_CALL;
template <>
inline constexpr StepOp kStrictOp<BinaryFunction, RealVal> = OP_BINARY_CALL;

template <class Op>
constexpr StepOp kLogicOp = OP_NONE;
template <>
inline constexpr StepOp kLogicOp<And> = OP_AND;
template <>
inline constexpr StepOp kLogicOp<Or> = OP_OR;
template <>
inline constexpr StepOp kLogicOp<Implies> = OP_IMPL;
template <>
inline constexpr StepOp kLogicOp<AtMostOne> = OP_AT_MOST_ONE;
template <>
inline constexpr StepOp kLogicOp<NoneTrue> = OP_NONE_TRUE;

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
  StepOp step_op() const override { return OP_CONST; }
};

/// An input: the front end writes its value field before each step.
template <class V>
class InputEI final : public EvalItem {
 public:
  InputEI() : EvalItem(0, V::kind) {}
  void compute(unsigned) override { status = 0; }
  StepOp step_op() const override { return OP_INPUT; }

  /// String number of the input's name.
  int identifier = 0;
};

/// Operators that are undefined as soon as one operand is; the statuses of
/// the operands are ORed. `Op` may add the division-by-zero bit, and then
/// the value is kept too.
template <class Out, class In, class Op>
class StrictEI final : public EvalItem {
 public:
  static_assert(kStrictOp<Op, In> != OP_NONE, "a strict class the schedule cannot run");

  explicit StrictEI(Op op = Op{}) : EvalItem(Op::arity, Out::kind), op(op) {}
  StepOp step_op() const override { return kStrictOp<Op, In>; }

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

  // Stateless: taking no room keeps a strict item at the size of the base,
  // which counts with a million of them.
  [[no_unique_address]] Op op;
};

/// and, or, implies over three values (three_valued in eval_ops.h).
template <class Op>
class LogicEI final : public EvalItem {
 public:
  LogicEI() : EvalItem(2, VK_BOOL) {}
  StepOp step_op() const override { return kLogicOp<Op>; }

  void compute(unsigned step) override {
    ensure_operands(step);
    const EvalItem& a = *operands[0];
    const EvalItem& b = *operands[1];
    int32_t r = 0;
    status = three_valued<Op>(a.status, is_true(a), b.status, is_true(b), r);
    if (status == 0) value.i = r;
  }
};

/// Counts the true operands among any number (none included); undefined
/// when any operand is, with the statuses of the undefined ones ORed.
template <class Op>
class CountEI final : public EvalItem {
 public:
  /// `room`: as for EvalItem.
  CountEI(int n, EvalItem** room) : EvalItem(n, VK_BOOL, room) {}
  StepOp step_op() const override { return kLogicOp<Op>; }

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
  /// `room`: as for EvalItem.
  explicit CondEI(EvalItem** room) : EvalItem(3, V::kind, room) {}
  StepOp step_op() const override { return by_kind<V>(OP_COND_I, OP_COND_R, OP_COND_N); }

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

/// What every output or assertion class holds besides its value: whether
/// its clock was false when it was last sampled.
class SampledEI : public EvalItem {
 public:
  using EvalItem::EvalItem;
  int is_bottom() override { return absent; }

  int absent = 0;
};

/// An output or assertion: its value operand sampled on its clock operand.
/// While the clock is false the item is absent and keeps what it held.
template <class V>
class OutputEI final : public SampledEI {
 public:
  OutputEI() : SampledEI(2, V::kind) {}

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
  StepOp step_op() const override { return by_kind<V>(OP_OUTPUT_I, OP_OUTPUT_R, OP_OUTPUT_N); }
};

/// The memory of the last value its operand had while its clock was true.
template <class V>
class BlastEI final : public EvalItem {
 public:
  BlastEI() : EvalItem(2, V::kind) { demands_operands = false; }
  StepOp step_op() const override { return by_kind<V>(OP_LAST_I, OP_LAST_R, OP_LAST_N); }

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
  EvalValue saved;
};

/// True up to and including the first step at which its clock is true.
class INIT_bool_EI final : public EvalItem {
 public:
  INIT_bool_EI() : EvalItem(1, VK_BOOL) { demands_operands = false; }
  StepOp step_op() const override { return OP_FIRST; }

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
