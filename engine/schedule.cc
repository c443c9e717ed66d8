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
  /// The results: the slot of instruction `k` is `out_v[k]`, `out_s[k]`.
  uint64_t* out_v;
  uint8_t* out_s;
};

// No reader looks at the value of a slot whose status is not 0 (it reads
// the status first, and copies move both), so every instruction writes a
// value, whatever its status: the step then runs without a branch on the
// statuses, which are 0 nearly always.

/// The strict rule: the operands' statuses ORed; only when they are all
/// defined the operation, which may add a status of its own.
template <class Out, class In, class Op>
inline void strict(const StepInstr& in, const Slots& x, size_t k, Op op = Op{}) {
  unsigned st;
  typename Out::T r{};
  if constexpr (Op::arity == 1) {
    st = x.s[in.a];
    if (st == 0) [[likely]] st = op(Word<In>::get(x.v[in.a]), r);
  } else {
    st = x.s[in.a] | x.s[in.b];
    if (st == 0) [[likely]] st = op(Word<In>::get(x.v[in.a]), Word<In>::get(x.v[in.b]), r);
  }
  x.out_s[k] = static_cast<uint8_t>(st);
  x.out_v[k] = Word<Out>::put(r);
}

/// Where an instruction finds its second operand's value: in the slot `b`
/// names, in `b` itself (an int constant), or in the slot of a constant,
/// whose status it need not read.
enum class Second { kSlot, kHeld, kConstantSlot };

template <class In, Second kSecond>
inline typename In::T second(const StepInstr& in, const Slots& x) {
  return Word<In>::get(kSecond == Second::kHeld ? in.b : x.v[in.b]);
}

/// `strict` over an operand and a constant, which is always defined.
template <class Out, class In, class Op, Second kSecond>
inline void strict_by_constant(const StepInstr& in, const Slots& x, size_t k) {
  unsigned st = x.s[in.a];
  typename Out::T r{};
  if (st == 0) [[likely]] st = Op{}(Word<In>::get(x.v[in.a]), second<In, kSecond>(in, x), r);
  x.out_s[k] = static_cast<uint8_t>(st);
  x.out_v[k] = Word<Out>::put(r);
}

template <class Op>
inline void logic(const StepInstr& in, const Slots& x, size_t k) {
  int32_t r = 0;
  const unsigned st = three_valued<Op>(x.s[in.a], truth(x.v[in.a]), x.s[in.b], truth(x.v[in.b]), r);
  x.out_s[k] = static_cast<uint8_t>(st);
  x.out_v[k] = Word<IntVal>::put(r);
}

template <class Op>
void count(const StepInstr& in, const uint32_t* list, const Slots& x, size_t k) {
  unsigned st = 0;
  int n_true = 0;
  for (uint32_t j = 0; j < in.b; ++j) {
    const uint32_t o = list[in.a + j];
    st |= x.s[o];
    if (x.s[o] == 0 && truth(x.v[o])) ++n_true;
  }
  x.out_s[k] = static_cast<uint8_t>(st);
  x.out_v[k] = Op{}(n_true);
}

/// Status `first` if it has one, else `then`, without a branch.
inline uint8_t first_status(unsigned first, uint8_t then) {
  return static_cast<uint8_t>(first | (then & (0u - (first == 0))));
}

/// `if`: the condition's status if it has one, else the chosen branch's;
/// an int result takes the branch's low half.
inline void choose(const StepInstr& in, const Slots& x, size_t k, uint64_t mask) {
  const uint8_t st = x.s[in.a];
  const uint32_t chosen = truth(x.v[in.a]) ? in.b : in.c;
  x.out_s[k] = first_status(st, x.s[chosen]);
  x.out_v[k] = x.v[chosen] & mask;
}

/// An `if` whose condition it compares itself: the comparison's operands
/// in `a` and `b`, the branches in `c` and `d`. A comparison adds no
/// status, so the condition's is its operands'.
template <class In, class Cmp, Second kSecond = Second::kSlot>
inline void choose_by(const StepInstr& in, const Slots& x, size_t k) {
  const unsigned st = kSecond == Second::kSlot ? x.s[in.a] | x.s[in.b] : x.s[in.a];
  int32_t holds = 0;
  Cmp{}(Word<In>::get(x.v[in.a]), second<In, kSecond>(in, x), holds);
  const uint32_t chosen = holds ? in.c : in.d;
  x.out_s[k] = first_status(st, x.s[chosen]);
  x.out_v[k] = x.v[chosen];
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

void Schedule::begin_step() {
  for (const auto& [item, slot] : c_.inputs)
    c_.values[slot] = word_of(item->value_kind, item->value);
  // No instruction before the next states' can end the process, so nothing
  // tells their runs apart from one run before the first root is sampled.
  run(0, c_.advance_begin);
}

void Schedule::sample(size_t i) {
  const ScheduleRoot& root = c_.roots[i];
  if (c_.statuses[root.clock] != 0) clock_takes_on_nil();
  SampledEI& item = *root.item;
  item.absent = !truth(c_.values[root.clock]);
  if (item.absent) return;
  item.status = c_.statuses[root.value];
  if (item.status == 0) put_word(item.value_kind, c_.values[root.value], item.value);
}

void Schedule::advance() {
  run(c_.advance_begin, static_cast<uint32_t>(c_.code.size() - 1));
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
  if (first_step_) swap_first_step();
}

void Schedule::reset() {
  std::fill(c_.statuses.begin() + c_.states_begin, c_.statuses.end(), uint8_t{ST_NIL});
  for (uint32_t slot = c_.first_states_begin; slot < c_.code_begin; ++slot) {
    c_.values[slot] = 1;
    c_.statuses[slot] = 0;
  }
  for (const ScheduleRoot& root : c_.roots) root.item->status = ST_NIL;
  if (!first_step_) swap_first_step();
}

void Schedule::swap_first_step() {
  for (FirstStepInstr& x : c_.first_step) std::swap(c_.code[x.position], x.held);
  first_step_ = !first_step_;
}

void Schedule::run(uint32_t begin, uint32_t end) {
  if (begin == end) return;
  // No handler then checks for the end: the code stops at an instruction
  // of its own, put back on every way out (a nil clock throws).
  struct Stop {
    StepInstr& at;
    const StepOp held;
    ~Stop() { at.op = held; }
  } stop{c_.code[end], c_.code[end].op};
  stop.at.op = OP_END;
  run_to_end(begin);
}

void Schedule::run_to_end(uint32_t begin) {
  // Each handler jumps straight to the next one: one indirect jump per
  // handler rather than one shared by all, which the processor predicts
  // far better over a long schedule.
  static const void* const kHandlers[] = {
#define KORVEL_STEP_HANDLER(name) &&L_##name,
      KORVEL_STEP_OPS(KORVEL_STEP_HANDLER)
#undef KORVEL_STEP_HANDLER
  };
  const StepInstr* code = c_.code.data();
  const uint32_t* lists = c_.lists.data();
  uint64_t* v = c_.values.data();
  uint8_t* s = c_.statuses.data();
  uint64_t* out_v = v + c_.code_begin;
  uint8_t* out_s = s + c_.code_begin;
  size_t k = begin;
  const StepInstr* in = code + begin;
  const Slots x{v, s, out_v, out_s};
#define NEXT                 \
  do {                       \
    ++k;                     \
    ++in;                    \
    goto* kHandlers[in->op]; \
  } while (0)
  goto* kHandlers[in->op];
  L_NOT:
    strict<BoolVal, BoolVal, Not>(*in, x, k);
    NEXT;
  L_EQ_I:
    strict<BoolVal, IntVal, Eq>(*in, x, k);
    NEXT;
  L_NE_I:
    strict<BoolVal, IntVal, Ne>(*in, x, k);
    NEXT;
  L_LT_I:
    strict<BoolVal, IntVal, Lt>(*in, x, k);
    NEXT;
  L_LE_I:
    strict<BoolVal, IntVal, Le>(*in, x, k);
    NEXT;
  L_GT_I:
    strict<BoolVal, IntVal, Gt>(*in, x, k);
    NEXT;
  L_GE_I:
    strict<BoolVal, IntVal, Ge>(*in, x, k);
    NEXT;
  L_EQ_R:
    strict<BoolVal, RealVal, Eq>(*in, x, k);
    NEXT;
  L_NE_R:
    strict<BoolVal, RealVal, Ne>(*in, x, k);
    NEXT;
  L_LT_R:
    strict<BoolVal, RealVal, Lt>(*in, x, k);
    NEXT;
  L_LE_R:
    strict<BoolVal, RealVal, Le>(*in, x, k);
    NEXT;
  L_GT_R:
    strict<BoolVal, RealVal, Gt>(*in, x, k);
    NEXT;
  L_GE_R:
    strict<BoolVal, RealVal, Ge>(*in, x, k);
    NEXT;
  L_EQ_N:
    strict<BoolVal, NameVal, Eq>(*in, x, k);
    NEXT;
  L_NE_N:
    strict<BoolVal, NameVal, Ne>(*in, x, k);
    NEXT;
  L_ADD_I:
    strict<IntVal, IntVal, Plus>(*in, x, k);
    NEXT;
  L_SUB_I:
    strict<IntVal, IntVal, Minus>(*in, x, k);
    NEXT;
  L_MUL_I:
    strict<IntVal, IntVal, Times>(*in, x, k);
    NEXT;
  L_DIV_I:
    strict<IntVal, IntVal, Divide>(*in, x, k);
    NEXT;
  L_MOD_I:
    strict<IntVal, IntVal, Modulo>(*in, x, k);
    NEXT;
  L_NEG_I:
    strict<IntVal, IntVal, Negate>(*in, x, k);
    NEXT;
  L_ADD_R:
    strict<RealVal, RealVal, Plus>(*in, x, k);
    NEXT;
  L_SUB_R:
    strict<RealVal, RealVal, Minus>(*in, x, k);
    NEXT;
  L_MUL_R:
    strict<RealVal, RealVal, Times>(*in, x, k);
    NEXT;
  L_DIV_R:
    strict<RealVal, RealVal, Divide>(*in, x, k);
    NEXT;
  L_NEG_R:
    strict<RealVal, RealVal, Negate>(*in, x, k);
    NEXT;
  L_INT_TO_REAL:
    strict<RealVal, IntVal, ToReal>(*in, x, k);
    NEXT;
  L_REAL_TO_INT:
    strict<IntVal, RealVal, ToInt>(*in, x, k);
    NEXT;
  L_UNARY_CALL:
    strict<RealVal, RealVal>(*in, x, k, UnaryFunction{c_.unary[in->b]});
    NEXT;
  L_BINARY_CALL:
    strict<RealVal, RealVal>(*in, x, k, BinaryFunction{c_.binary[in->c]});
    NEXT;
  L_AND:
    logic<And>(*in, x, k);
    NEXT;
  L_OR:
    logic<Or>(*in, x, k);
    NEXT;
  L_IMPL:
    logic<Implies>(*in, x, k);
    NEXT;
  L_AT_MOST_ONE:
    count<AtMostOne>(*in, lists, x, k);
    NEXT;
  L_NONE_TRUE:
    count<NoneTrue>(*in, lists, x, k);
    NEXT;
  L_COND_I:
    choose(*in, x, k, kLowHalf);
    NEXT;
  L_COND_R:
  L_COND_N:
    choose(*in, x, k, kWhole);
    NEXT;
  L_IF_EQ_I:
    choose_by<IntVal, Eq>(*in, x, k);
    NEXT;
  L_IF_NE_I:
    choose_by<IntVal, Ne>(*in, x, k);
    NEXT;
  L_IF_LT_I:
    choose_by<IntVal, Lt>(*in, x, k);
    NEXT;
  L_IF_LE_I:
    choose_by<IntVal, Le>(*in, x, k);
    NEXT;
  L_IF_GT_I:
    choose_by<IntVal, Gt>(*in, x, k);
    NEXT;
  L_IF_GE_I:
    choose_by<IntVal, Ge>(*in, x, k);
    NEXT;
  L_IF_EQ_R:
    choose_by<RealVal, Eq>(*in, x, k);
    NEXT;
  L_IF_NE_R:
    choose_by<RealVal, Ne>(*in, x, k);
    NEXT;
  L_IF_LT_R:
    choose_by<RealVal, Lt>(*in, x, k);
    NEXT;
  L_IF_LE_R:
    choose_by<RealVal, Le>(*in, x, k);
    NEXT;
  L_IF_GT_R:
    choose_by<RealVal, Gt>(*in, x, k);
    NEXT;
  L_IF_GE_R:
    choose_by<RealVal, Ge>(*in, x, k);
    NEXT;
  L_IF_EQ_N:
    choose_by<NameVal, Eq>(*in, x, k);
    NEXT;
  L_IF_NE_N:
    choose_by<NameVal, Ne>(*in, x, k);
    NEXT;
  L_ZERO:
    out_s[k] = s[in->a];
    out_v[k] = 0;
    NEXT;
  L_STATE:
    out_s[k] = s[in->a];
    out_v[k] = v[in->a];
    NEXT;
  L_CHECK_CLOCK:
    if (s[in->a] != 0) clock_takes_on_nil();
    NEXT;
  L_ADD_IK:
    strict_by_constant<IntVal, IntVal, Plus, Second::kHeld>(*in, x, k);
    NEXT;
  L_EQ_IK:
    strict_by_constant<BoolVal, IntVal, Eq, Second::kHeld>(*in, x, k);
    NEXT;
  L_NE_IK:
    strict_by_constant<BoolVal, IntVal, Ne, Second::kHeld>(*in, x, k);
    NEXT;
  L_LT_IK:
    strict_by_constant<BoolVal, IntVal, Lt, Second::kHeld>(*in, x, k);
    NEXT;
  L_LE_IK:
    strict_by_constant<BoolVal, IntVal, Le, Second::kHeld>(*in, x, k);
    NEXT;
  L_GT_IK:
    strict_by_constant<BoolVal, IntVal, Gt, Second::kHeld>(*in, x, k);
    NEXT;
  L_GE_IK:
    strict_by_constant<BoolVal, IntVal, Ge, Second::kHeld>(*in, x, k);
    NEXT;
  L_IF_EQ_IK:
    choose_by<IntVal, Eq, Second::kHeld>(*in, x, k);
    NEXT;
  L_IF_NE_IK:
    choose_by<IntVal, Ne, Second::kHeld>(*in, x, k);
    NEXT;
  L_IF_LT_IK:
    choose_by<IntVal, Lt, Second::kHeld>(*in, x, k);
    NEXT;
  L_IF_LE_IK:
    choose_by<IntVal, Le, Second::kHeld>(*in, x, k);
    NEXT;
  L_IF_GT_IK:
    choose_by<IntVal, Gt, Second::kHeld>(*in, x, k);
    NEXT;
  L_IF_GE_IK:
    choose_by<IntVal, Ge, Second::kHeld>(*in, x, k);
    NEXT;
  L_EQ_NK:
    strict_by_constant<BoolVal, NameVal, Eq, Second::kConstantSlot>(*in, x, k);
    NEXT;
  L_NE_NK:
    strict_by_constant<BoolVal, NameVal, Ne, Second::kConstantSlot>(*in, x, k);
    NEXT;
  L_IF_EQ_NK:
    choose_by<NameVal, Eq, Second::kConstantSlot>(*in, x, k);
    NEXT;
  L_IF_NE_NK:
    choose_by<NameVal, Ne, Second::kConstantSlot>(*in, x, k);
    NEXT;
  L_END:
    return;
  L_NONE:
  L_CONST:
  L_INPUT:
  L_LAST_I:
  L_LAST_R:
  L_LAST_N:
  L_FIRST:
  L_OUTPUT_I:
  L_OUTPUT_R:
  L_OUTPUT_N:
    internal_error("file 'schedule':\nno instruction %d\n", in->op);
#undef NEXT
}
