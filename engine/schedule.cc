// Running a schedule: the hot loop of every step.
#include "engine/schedule.h"

#include <algorithm>

#include "engine/eval_items.h"
#include "support/diagnostics.h"

namespace {

/// How a value kind sits in a slot's word.
template <class V>
struct Word;

template <>
struct Word<IntVal> {
  static int32_t get(uint64_t w) { return static_cast<int32_t>(static_cast<uint32_t>(w)); }
  static uint64_t put(int32_t x) { return static_cast<uint32_t>(x); }
};
template <>
struct Word<BoolVal> : Word<IntVal> {};

template <>
struct Word<RealVal> {
  static double get(uint64_t w) { return std::bit_cast<double>(w); }
  static uint64_t put(double x) { return std::bit_cast<uint64_t>(x); }
};

template <>
struct Word<NameVal> {
  static const char* get(uint64_t w) {
    return reinterpret_cast<const char*>(static_cast<uintptr_t>(w));
  }
  static uint64_t put(const char* x) { return reinterpret_cast<uintptr_t>(x); }
};

bool truth(uint64_t w) {
  return Word<IntVal>::get(w) != 0;
}

/// Where an instruction reads its operands and writes its result.
struct Slots {
  const uint64_t* v;
  const uint8_t* s;
  uint64_t& rv;
  uint8_t& rs;
};

/// The strict rule: the operands' statuses ORed; only when they are all
/// defined the operation, which may add a status of its own; a value only
/// when the result is defined.
template <class Out, class In, class Op>
inline void strict(const StepInstr& in, Slots x, Op op = Op{}) {
  unsigned st;
  typename Out::T r{};
  if constexpr (Op::arity == 1) {
    st = x.s[in.a];
    if (st == 0) st = op(Word<In>::get(x.v[in.a]), r);
  } else {
    st = x.s[in.a] | x.s[in.b];
    if (st == 0) st = op(Word<In>::get(x.v[in.a]), Word<In>::get(x.v[in.b]), r);
  }
  x.rs = static_cast<uint8_t>(st);
  if (st == 0) x.rv = Word<Out>::put(r);
}

/// `strict` over an int and a constant, which is always defined.
template <class Out, class Op>
inline void strict_by_constant(const StepInstr& in, Slots x) {
  unsigned st = x.s[in.a];
  typename Out::T r{};
  if (st == 0) st = Op{}(Word<IntVal>::get(x.v[in.a]), Word<IntVal>::get(in.b), r);
  x.rs = static_cast<uint8_t>(st);
  if (st == 0) x.rv = Word<Out>::put(r);
}

template <class Op>
inline void logic(const StepInstr& in, Slots x) {
  int32_t r = 0;
  const unsigned st = three_valued<Op>(x.s[in.a], truth(x.v[in.a]), x.s[in.b], truth(x.v[in.b]), r);
  x.rs = static_cast<uint8_t>(st);
  if (st == 0) x.rv = Word<IntVal>::put(r);
}

template <class Op>
void count(const StepInstr& in, const uint32_t* list, Slots x) {
  unsigned st = 0;
  int n_true = 0;
  for (uint32_t j = 0; j < in.b; ++j) {
    const uint32_t o = list[in.a + j];
    st |= x.s[o];
    if (x.s[o] == 0 && truth(x.v[o])) ++n_true;
  }
  x.rs = static_cast<uint8_t>(st);
  if (st == 0) x.rv = Op{}(n_true);
}

/// `if`: the condition's status if it has one, else the chosen branch's,
/// with its value when defined; an int result takes the branch's low half.
inline void choose(const StepInstr& in, Slots x, uint64_t mask) {
  if (x.s[in.a] != 0) {
    x.rs = x.s[in.a];
    return;
  }
  const uint32_t chosen = truth(x.v[in.a]) ? in.b : in.c;
  x.rs = x.s[chosen];
  if (x.s[chosen] == 0) x.rv = x.v[chosen] & mask;
}

/// An `if` whose condition it compares itself: the comparison's operands
/// in `a` and `b`, the branches in `c` and `d`. A comparison adds no
/// status, so the condition's is its operands'.
template <class In, class Cmp, bool kConstant = false>
inline void choose_by(const StepInstr& in, Slots x) {
  const unsigned st = kConstant ? x.s[in.a] : x.s[in.a] | x.s[in.b];
  if (st != 0) {
    x.rs = static_cast<uint8_t>(st);
    return;
  }
  int32_t holds = 0;
  Cmp{}(Word<In>::get(x.v[in.a]), Word<In>::get(kConstant ? in.b : x.v[in.b]), holds);
  const uint32_t chosen = holds ? in.c : in.d;
  x.rs = x.s[chosen];
  if (x.s[chosen] == 0) x.rv = x.v[chosen];
}

constexpr uint64_t kLowHalf = 0xffffffffu;
constexpr uint64_t kWhole = ~uint64_t{0};

using Eq = Compare<std::equal_to>;
using Ne = Compare<std::not_equal_to>;
using Lt = Compare<std::less>;
using Le = Compare<std::less_equal>;
using Gt = Compare<std::greater>;
using Ge = Compare<std::greater_equal>;

}  // namespace

void Schedule::take_inputs() {
  for (const auto& [item, slot] : c_.inputs)
    c_.values[slot] = word_of(item->value_kind, item->value);
}

void Schedule::sample(size_t i) {
  const ScheduleRoot& root = c_.roots[i];
  run(i == 0 ? 0 : c_.roots[i - 1].end, root.end);
  if (c_.statuses[root.clock] != 0) clock_takes_on_nil();
  SampledEI& item = *root.item;
  item.absent = !truth(c_.values[root.clock]);
  if (item.absent) return;
  item.status = c_.statuses[root.value];
  if (item.status == 0) put_word(item.value_kind, c_.values[root.value], item.value);
}

void Schedule::advance() {
  run(c_.advance_begin, static_cast<uint32_t>(c_.code.size()));
  uint64_t* v = c_.values.data();
  uint8_t* s = c_.statuses.data();
  // No reader looks at an undefined value, so an undefined one is copied
  // along with its status.
  for (const StateCopy& m : c_.copies) {
    s[m.to] = s[m.from];
    v[m.to] = v[m.from];
  }
  for (const NextState& m : c_.clocked) {
    if (s[m.clock] != 0) clock_takes_on_nil();
    if (!truth(v[m.clock])) continue;
    s[m.to] = s[m.from];
    v[m.to] = v[m.from] & (m.low_half ? kLowHalf : kWhole);
  }
  for (const FirstNext& f : c_.firsts) {
    if (truth(v[f.state])) v[f.state] = !truth(v[f.clock]);
  }
}

void Schedule::reset() {
  std::fill(c_.statuses.begin() + c_.states_begin, c_.statuses.end(), uint8_t{ST_NIL});
  for (uint32_t slot = c_.first_states_begin; slot < c_.code_begin; ++slot) {
    c_.values[slot] = 1;
    c_.statuses[slot] = 0;
  }
  for (const ScheduleRoot& root : c_.roots) root.item->status = ST_NIL;
}

void Schedule::run(uint32_t begin, uint32_t end) {
  const StepInstr* code = c_.code.data();
  const uint32_t* lists = c_.lists.data();
  uint64_t* v = c_.values.data();
  uint8_t* s = c_.statuses.data();
  uint64_t* out_v = v + c_.code_begin;
  uint8_t* out_s = s + c_.code_begin;
  for (uint32_t k = begin; k != end; ++k) {
    const StepInstr& in = code[k];
    const Slots x{v, s, out_v[k], out_s[k]};
    switch (in.op) {
      case OP_NOT:
        strict<BoolVal, BoolVal, Not>(in, x);
        break;
      case OP_EQ_I:
        strict<BoolVal, IntVal, Eq>(in, x);
        break;
      case OP_NE_I:
        strict<BoolVal, IntVal, Ne>(in, x);
        break;
      case OP_LT_I:
        strict<BoolVal, IntVal, Lt>(in, x);
        break;
      case OP_LE_I:
        strict<BoolVal, IntVal, Le>(in, x);
        break;
      case OP_GT_I:
        strict<BoolVal, IntVal, Gt>(in, x);
        break;
      case OP_GE_I:
        strict<BoolVal, IntVal, Ge>(in, x);
        break;
      case OP_EQ_R:
        strict<BoolVal, RealVal, Eq>(in, x);
        break;
      case OP_NE_R:
        strict<BoolVal, RealVal, Ne>(in, x);
        break;
      case OP_LT_R:
        strict<BoolVal, RealVal, Lt>(in, x);
        break;
      case OP_LE_R:
        strict<BoolVal, RealVal, Le>(in, x);
        break;
      case OP_GT_R:
        strict<BoolVal, RealVal, Gt>(in, x);
        break;
      case OP_GE_R:
        strict<BoolVal, RealVal, Ge>(in, x);
        break;
      case OP_EQ_N:
        strict<BoolVal, NameVal, Eq>(in, x);
        break;
      case OP_NE_N:
        strict<BoolVal, NameVal, Ne>(in, x);
        break;
      case OP_ADD_I:
        strict<IntVal, IntVal, Plus>(in, x);
        break;
      case OP_SUB_I:
        strict<IntVal, IntVal, Minus>(in, x);
        break;
      case OP_MUL_I:
        strict<IntVal, IntVal, Times>(in, x);
        break;
      case OP_DIV_I:
        strict<IntVal, IntVal, Divide>(in, x);
        break;
      case OP_MOD_I:
        strict<IntVal, IntVal, Modulo>(in, x);
        break;
      case OP_NEG_I:
        strict<IntVal, IntVal, Negate>(in, x);
        break;
      case OP_ADD_R:
        strict<RealVal, RealVal, Plus>(in, x);
        break;
      case OP_SUB_R:
        strict<RealVal, RealVal, Minus>(in, x);
        break;
      case OP_MUL_R:
        strict<RealVal, RealVal, Times>(in, x);
        break;
      case OP_DIV_R:
        strict<RealVal, RealVal, Divide>(in, x);
        break;
      case OP_NEG_R:
        strict<RealVal, RealVal, Negate>(in, x);
        break;
      case OP_INT_TO_REAL:
        strict<RealVal, IntVal, ToReal>(in, x);
        break;
      case OP_REAL_TO_INT:
        strict<IntVal, RealVal, ToInt>(in, x);
        break;
      case OP_UNARY_CALL:
        strict<RealVal, RealVal>(in, x, UnaryFunction{c_.unary[in.b]});
        break;
      case OP_BINARY_CALL:
        strict<RealVal, RealVal>(in, x, BinaryFunction{c_.binary[in.c]});
        break;
      case OP_AND:
        logic<And>(in, x);
        break;
      case OP_OR:
        logic<Or>(in, x);
        break;
      case OP_IMPL:
        logic<Implies>(in, x);
        break;
      case OP_AT_MOST_ONE:
        count<AtMostOne>(in, lists, x);
        break;
      case OP_NONE_TRUE:
        count<NoneTrue>(in, lists, x);
        break;
      case OP_COND_I:
        choose(in, x, kLowHalf);
        break;
      case OP_COND_R:
      case OP_COND_N:
        choose(in, x, kWhole);
        break;
      case OP_IF_EQ_I:
        choose_by<IntVal, Eq>(in, x);
        break;
      case OP_IF_NE_I:
        choose_by<IntVal, Ne>(in, x);
        break;
      case OP_IF_LT_I:
        choose_by<IntVal, Lt>(in, x);
        break;
      case OP_IF_LE_I:
        choose_by<IntVal, Le>(in, x);
        break;
      case OP_IF_GT_I:
        choose_by<IntVal, Gt>(in, x);
        break;
      case OP_IF_GE_I:
        choose_by<IntVal, Ge>(in, x);
        break;
      case OP_IF_EQ_R:
        choose_by<RealVal, Eq>(in, x);
        break;
      case OP_IF_NE_R:
        choose_by<RealVal, Ne>(in, x);
        break;
      case OP_IF_LT_R:
        choose_by<RealVal, Lt>(in, x);
        break;
      case OP_IF_LE_R:
        choose_by<RealVal, Le>(in, x);
        break;
      case OP_IF_GT_R:
        choose_by<RealVal, Gt>(in, x);
        break;
      case OP_IF_GE_R:
        choose_by<RealVal, Ge>(in, x);
        break;
      case OP_IF_EQ_N:
        choose_by<NameVal, Eq>(in, x);
        break;
      case OP_IF_NE_N:
        choose_by<NameVal, Ne>(in, x);
        break;
      case OP_ZERO:
        x.rs = s[in.a];
        x.rv = 0;
        break;
      case OP_STATE:
        x.rs = s[in.a];
        x.rv = v[in.a];
        break;
      case OP_CHECK_CLOCK:
        if (s[in.a] != 0) clock_takes_on_nil();
        break;
      case OP_ADD_IK:
        strict_by_constant<IntVal, Plus>(in, x);
        break;
      case OP_EQ_IK:
        strict_by_constant<BoolVal, Eq>(in, x);
        break;
      case OP_NE_IK:
        strict_by_constant<BoolVal, Ne>(in, x);
        break;
      case OP_LT_IK:
        strict_by_constant<BoolVal, Lt>(in, x);
        break;
      case OP_LE_IK:
        strict_by_constant<BoolVal, Le>(in, x);
        break;
      case OP_GT_IK:
        strict_by_constant<BoolVal, Gt>(in, x);
        break;
      case OP_GE_IK:
        strict_by_constant<BoolVal, Ge>(in, x);
        break;
      case OP_IF_EQ_IK:
        choose_by<IntVal, Eq, true>(in, x);
        break;
      case OP_IF_NE_IK:
        choose_by<IntVal, Ne, true>(in, x);
        break;
      case OP_IF_LT_IK:
        choose_by<IntVal, Lt, true>(in, x);
        break;
      case OP_IF_LE_IK:
        choose_by<IntVal, Le, true>(in, x);
        break;
      case OP_IF_GT_IK:
        choose_by<IntVal, Gt, true>(in, x);
        break;
      case OP_IF_GE_IK:
        choose_by<IntVal, Ge, true>(in, x);
        break;
      default:
        internal_error("file 'schedule':\nno instruction %d\n", in.op);
    }
  }
}
