#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <memory>
#include <vector>

#include "engine/eval_items.h"
#include "tests/common/test_io.h"

namespace {

/// Owns the items of one test and wires operands.
class Graph {
 public:
  template <class C, class... Args>
  C* make(std::initializer_list<EvalItem*> ops, Args&&... args) {
    auto item = std::make_unique<C>(std::forward<Args>(args)...);
    int i = 0;
    for (EvalItem* op : ops) item->operands[i++] = op;
    C* raw = item.get();
    items_.push_back(std::move(item));
    return raw;
  }
  /// Leaves that hold whatever value and status the test gives them.
  EvalItem* leaf_int(int32_t x, unsigned status = 0) {
    return with(make<CONST_int_EI>({}, x), status);
  }
  EvalItem* leaf_bool(bool x, unsigned status = 0) {
    return with(make<CONST_bool_EI>({}, x), status);
  }
  EvalItem* leaf_real(double x, unsigned status = 0) {
    return with(make<CONST_double_EI>({}, x), status);
  }

 private:
  static EvalItem* with(EvalItem* leaf, unsigned status) {
    leaf->status = status;
    return leaf;
  }
  std::vector<std::unique_ptr<EvalItem>> items_;
};

/// Computes a fresh item once and returns it.
EvalItem* run(EvalItem* item, unsigned step = 1) {
  item->ensure(step);
  return item;
}

template <class C>
EvalItem* binary(Graph& g, EvalItem* a, EvalItem* b) {
  return run(g.make<C>({a, b}));
}
template <class C>
EvalItem* ints(Graph& g, int32_t a, int32_t b) {
  return binary<C>(g, g.leaf_int(a), g.leaf_int(b));
}
template <class C>
EvalItem* reals(Graph& g, double a, double b) {
  return binary<C>(g, g.leaf_real(a), g.leaf_real(b));
}

// Three-valued connectives ---------------------------------------------------

// -1 stands for nil in the table.
struct LogicRow {
  int a, b, and_, or_, impl;
};

TEST(LogicItems, ThreeValuedTables) {
  const LogicRow rows[] = {
      {0, 0, 0, 0, 1},   {0, 1, 0, 1, 1},    {1, 0, 0, 1, 0},
      {1, 1, 1, 1, 1},   {-1, 0, 0, -1, -1}, {-1, 1, -1, 1, 1},
      {0, -1, 0, -1, 1}, {1, -1, -1, 1, -1}, {-1, -1, -1, -1, -1},
  };
  for (const LogicRow& r : rows) {
    Graph g;
    EvalItem* a = g.leaf_bool(r.a == 1, r.a < 0 ? unsigned{ST_NIL} : 0);
    EvalItem* b = g.leaf_bool(r.b == 1, r.b < 0 ? unsigned{ST_NIL} : 0);
    const std::pair<EvalItem*, int> cases[] = {{g.make<AND_bool_EI>({a, b}), r.and_},
                                               {g.make<OR_bool_EI>({a, b}), r.or_},
                                               {g.make<IMPL_bool_EI>({a, b}), r.impl}};
    for (auto [item, want] : cases) {
      run(item);
      SCOPED_TRACE(testing::Message() << "a=" << r.a << " b=" << r.b << " want " << want);
      if (want < 0) {
        EXPECT_EQ(item->status, ST_NIL);
      } else {
        EXPECT_EQ(item->status, 0u);
        EXPECT_EQ(item->value.i, want);
      }
    }
  }
}

TEST(UndefinedItems, StatusesCombine) {
  Graph g;
  EvalItem* nil = g.leaf_bool(false, ST_NIL);
  EvalItem* div = g.leaf_bool(false, ST_DIV_ZERO);
  EXPECT_EQ(run(g.make<AND_bool_EI>({nil, div}))->status, 3u);
  EvalItem* int_nil = g.leaf_int(1, ST_NIL);
  EvalItem* int_div = ints<DIV_int_EI>(g, 1, 0);
  EXPECT_EQ(binary<PLUS_int_EI>(g, int_nil, int_div)->status, 3u);
  EXPECT_EQ(binary<LT_int_EI>(g, int_div, g.leaf_int(3))->status, ST_DIV_ZERO);
  // One undefined side that does not decide: its own status, not ORed.
  EvalItem* t = g.leaf_bool(true);
  EXPECT_EQ(run(g.make<AND_bool_EI>({div, t}))->status, ST_DIV_ZERO);
  EXPECT_EQ(run(g.make<NOT_bool_EI>({div}))->status, ST_DIV_ZERO);
}

TEST(CountItems, DieseAndNor) {
  Graph g;
  EvalItem* f = g.leaf_bool(false);
  EvalItem* t = g.leaf_bool(true);
  EvalItem* nil = g.leaf_bool(true, ST_NIL);
  EvalItem* div = g.leaf_bool(false, ST_DIV_ZERO);

  EXPECT_EQ(run(g.make<DIESE_bool_EI>({}, 0))->value.i, 1);
  EXPECT_EQ(run(g.make<NOR_bool_EI>({}, 0))->value.i, 1);
  EXPECT_EQ(run(g.make<DIESE_bool_EI>({f, t, f}, 3))->value.i, 1);
  EXPECT_EQ(run(g.make<DIESE_bool_EI>({t, f, t}, 3))->value.i, 0);
  EXPECT_EQ(run(g.make<NOR_bool_EI>({f, f}, 2))->value.i, 1);
  EXPECT_EQ(run(g.make<NOR_bool_EI>({f, t}, 2))->value.i, 0);
  // Two true operands do not make it false while one is nil.
  EXPECT_EQ(run(g.make<DIESE_bool_EI>({t, t, nil}, 3))->status, ST_NIL);
  EXPECT_EQ(run(g.make<NOR_bool_EI>({nil, t, div}, 3))->status, 3u);
}

// Arithmetic -------------------------------------------------------------------

TEST(IntItems, WrapOnThirtyTwoBits) {
  Graph g;
  EXPECT_EQ(ints<PLUS_int_EI>(g, INT_MAX, 1)->value.i, INT_MIN);
  EXPECT_EQ(ints<MINUS_int_EI>(g, INT_MIN, 1)->value.i, INT_MAX);
  EXPECT_EQ(ints<TIMES_int_EI>(g, INT_MAX, INT_MAX)->value.i, 1);
  EXPECT_EQ(ints<TIMES_int_EI>(g, 65536, 65536)->value.i, 0);
  EXPECT_EQ(run(g.make<UMINUS_int_EI>({g.leaf_int(INT_MIN)}))->value.i, INT_MIN);
  EXPECT_EQ(run(g.make<UMINUS_int_EI>({g.leaf_int(INT_MAX)}))->value.i, -INT_MAX);
}

TEST(IntItems, DivisionAndRemainder) {
  Graph g;
  EXPECT_EQ(ints<DIV_int_EI>(g, -7, 2)->value.i, -3);
  EXPECT_EQ(ints<MOD_int_EI>(g, -7, 2)->value.i, -1);
  EXPECT_EQ(ints<MOD_int_EI>(g, 7, -2)->value.i, 1);
  EXPECT_EQ(ints<DIV_int_EI>(g, INT_MIN, -1)->value.i, INT_MIN);
  EXPECT_EQ(ints<MOD_int_EI>(g, INT_MIN, -1)->value.i, 0);
  EXPECT_EQ(ints<DIV_int_EI>(g, 5, -1)->value.i, -5);

  EvalItem* zero = g.leaf_int(0);
  EvalItem* by_zero[] = {g.make<DIV_int_EI>({g.leaf_int(7), zero}),
                         g.make<MOD_int_EI>({g.leaf_int(7), zero})};
  for (EvalItem* item : by_zero) {
    item->value.i = 42;
    run(item);
    EXPECT_EQ(item->status, ST_DIV_ZERO);
    EXPECT_EQ(item->value.i, 42);  // kept
  }
  // A nil dividend hides the zero divisor.
  EXPECT_EQ(binary<DIV_int_EI>(g, g.leaf_int(1, ST_NIL), zero)->status, ST_NIL);
}

TEST(RealItems, DivisionByZeroAndNaN) {
  Graph g;
  const double nan = std::nan("");
  EXPECT_EQ(reals<DIV_double_EI>(g, 1.0, 0.0)->status, ST_DIV_ZERO);
  EXPECT_EQ(reals<DIV_double_EI>(g, 1.0, -0.0)->status, ST_DIV_ZERO);
  EvalItem* q = reals<DIV_double_EI>(g, 1.0, nan);
  EXPECT_EQ(q->status, 0u);
  EXPECT_TRUE(std::isnan(q->value.d));
  EXPECT_DOUBLE_EQ(reals<DIV_double_EI>(g, 1.0, 4.0)->value.d, 0.25);

  EXPECT_EQ(reals<LT_double_EI>(g, nan, 1.0)->value.i, 0);
  EXPECT_EQ(reals<GE_double_EI>(g, nan, 1.0)->value.i, 0);
  EXPECT_EQ(reals<GT_double_EI>(g, 1.0, nan)->value.i, 0);
  EXPECT_EQ(reals<EQ_double_EI>(g, nan, nan)->value.i, 0);
  EXPECT_EQ(reals<NE_double_EI>(g, nan, nan)->value.i, 1);
  EXPECT_EQ(reals<LE_double_EI>(g, 1.0, 1.0)->value.i, 1);
}

TEST(RealItems, Conversions) {
  Graph g;
  EXPECT_EQ(run(g.make<REAL2INT_int_EI>({g.leaf_real(-2.7)}))->value.i, -2);
  EXPECT_EQ(run(g.make<REAL2INT_int_EI>({g.leaf_real(2147483647.9)}))->value.i, INT_MAX);
  EXPECT_EQ(run(g.make<REAL2INT_int_EI>({g.leaf_real(-2147483648.9)}))->value.i, INT_MIN);
  EXPECT_EQ(run(g.make<REAL2INT_int_EI>({g.leaf_real(1e10)}))->value.i, INT_MIN);
  EXPECT_EQ(run(g.make<REAL2INT_int_EI>({g.leaf_real(std::nan(""))}))->value.i, INT_MIN);
  EXPECT_EQ(run(g.make<INT2REAL_double_EI>({g.leaf_int(-3)}))->value.d, -3.0);
  // A NaN is a value: sqrt(-1) is defined.
  UnaryFunction sqrt_of{[](double x) { return std::sqrt(x); }};
  EXPECT_EQ(run(g.make<UFUNC_double_EI>({g.leaf_real(-1.0)}, sqrt_of))->status, 0u);
}

// An operand of another kind is read from the bits of its 8-byte field: an
// int from a real is the low half of the double's pattern, a real from an
// int has the int in its low half; a name reads as zero and a number never
// reads as a name.
TEST(OtherKindOperands, AreReadFromTheFieldsBits) {
  Graph g;
  const double real = 2.5;  // 0x4004000000000000: low half 0
  const double tagged = std::bit_cast<double>(uint64_t{0x400400000000002a});
  EXPECT_EQ(ints<PLUS_int_EI>(g, 1, 0)->value.i, 1);
  EXPECT_EQ(binary<PLUS_int_EI>(g, g.leaf_real(real), g.leaf_int(1))->value.i, 1);
  EXPECT_EQ(binary<PLUS_int_EI>(g, g.leaf_real(tagged), g.leaf_int(1))->value.i, 43);
  EXPECT_EQ(binary<EQ_double_EI>(g, g.leaf_int(7), g.leaf_real(std::bit_cast<double>(uint64_t{7})))
                ->value.i,
            1);
  EXPECT_EQ(binary<EQ_int_EI>(g, g.leaf_bool(true), g.leaf_int(1))->value.i, 1);
  static const char red[] = "red";
  EvalItem* name = g.make<CONST_extern_EI>({}, red);
  EXPECT_EQ(binary<PLUS_int_EI>(g, name, g.leaf_int(5))->value.i, 5);
  EXPECT_EQ(binary<EQ_extern_EI>(g, g.leaf_int(0), name)->value.i, 0);
  EvalItem* choice = run(g.make<COND_extern_EI>({g.leaf_bool(true), g.leaf_int(3), name}));
  EXPECT_EQ(choice->value.s, nullptr);
  EvalItem* held = run(g.make<COND_double_EI>({g.leaf_int(1), g.leaf_int(-1), g.leaf_real(0)}));
  EXPECT_EQ(std::bit_cast<uint64_t>(held->value.d), uint64_t{0xffffffff});
}

TEST(ExternItems, EqualityIsByNamePointer) {
  Graph g;
  static const char red[] = "red";
  static const char other_red[] = "red";
  EvalItem* a = g.make<CONST_extern_EI>({}, red);
  EvalItem* b = g.make<CONST_extern_EI>({}, red);
  EvalItem* c = g.make<CONST_extern_EI>({}, other_red);
  EXPECT_EQ(binary<EQ_extern_EI>(g, a, b)->value.i, 1);
  EXPECT_EQ(binary<EQ_extern_EI>(g, a, c)->value.i, 0);
  EXPECT_EQ(binary<NE_extern_EI>(g, a, c)->value.i, 1);
}

// Choice and clocks ------------------------------------------------------------

TEST(CondItems, OnlyTheChosenBranchCounts) {
  Graph g;
  EvalItem* t = g.leaf_bool(true);
  EvalItem* f = g.leaf_bool(false);
  EvalItem* five = g.leaf_int(5);
  EvalItem* nil = g.leaf_int(9, ST_NIL);
  EvalItem* x = run(g.make<COND_int_EI>({t, five, nil}));
  EXPECT_EQ(x->status, 0u);
  EXPECT_EQ(x->value.i, 5);
  EvalItem* y = g.make<COND_int_EI>({f, five, nil});
  y->value.i = 3;
  run(y);
  EXPECT_EQ(y->status, ST_NIL);
  EXPECT_EQ(y->value.i, 3);
  EXPECT_EQ(run(g.make<COND_int_EI>({g.leaf_bool(true, ST_DIV_ZERO), five, five}))->status,
            ST_DIV_ZERO);
}

TEST(OutputItems, AbsentWhileClockFalse) {
  Graph g;
  EvalItem* v = g.leaf_int(4);
  EvalItem* clock = g.leaf_bool(true);
  EvalItem* out = g.make<OUTPUT_int_EI>({v, clock});
  run(out, 1);
  EXPECT_EQ(out->is_bottom(), 0);
  EXPECT_EQ(out->value.i, 4);
  clock->value.i = 0;
  v->value.i = 8;
  v->status = ST_NIL;
  run(out, 2);
  EXPECT_NE(out->is_bottom(), 0);
  EXPECT_EQ(out->value.i, 4);
  EXPECT_EQ(out->status, 0u);
  clock->value.i = 1;
  run(out, 3);
  EXPECT_EQ(out->is_bottom(), 0);
  EXPECT_EQ(out->status, ST_NIL);
  EXPECT_EQ(out->value.i, 4);
}

TEST(OutputItemsFatalTest, NilClockEndsTheProcess) {
  Graph g;
  EvalItem* out = g.make<OUTPUT_bool_EI>({g.leaf_bool(true), g.leaf_bool(true, ST_NIL)});
  EXPECT_ENDS(run(out), 1, "^clock takes on nil\n$");
}

// Memories ---------------------------------------------------------------------

/// The end of a step: every memory's operands first, then every new state.
void advance(const std::vector<EvalItem*>& memories, unsigned step) {
  for (EvalItem* m : memories) m->compute_next(step);
  for (EvalItem* m : memories) m->rewrite();
}

// A memory's value and first instant on a clock, through steps and a
// reset, are process cases: tests/cli/cases/batch_sampler, batch_watchdog
// and batch_counter.
TEST(MemoryItems, NilSavedWhenOperandNil) {
  Graph g;
  EvalItem* v = g.leaf_int(3);
  EvalItem* last = g.make<BLAST_int_EI>({v, g.leaf_bool(true)});
  run(last, 1);
  advance({last}, 1);
  EXPECT_EQ(run(last, 2)->value.i, 3);
  v->status = ST_DIV_ZERO;
  advance({last}, 2);
  EXPECT_EQ(run(last, 3)->status, ST_DIV_ZERO);
}

TEST(MemoryItemsFatalTest, NilClockAtRewriteOrInit) {
  Graph g;
  EvalItem* clock = g.leaf_bool(true, ST_NIL);
  EvalItem* last = g.make<BLAST_int_EI>({g.leaf_int(1), clock});
  EvalItem* init = g.make<INIT_bool_EI>({clock});
  EXPECT_ENDS(advance({last}, 1), 1, "clock takes on nil");
  EXPECT_ENDS(init->compute_next(1), 1, "clock takes on nil");
}

// The ensuring protocol -----------------------------------------------------------

int g_calls = 0;
double counted(double x) {
  ++g_calls;
  return x + 1;
}

TEST(Ensuring, SharedItemComputedOncePerStepAndNoShortCircuit) {
  Graph g;
  EvalItem* shared = g.make<UFUNC_double_EI>({g.leaf_real(1.0)}, UnaryFunction{counted});
  EvalItem* sum = g.make<PLUS_double_EI>({shared, shared});
  EvalItem* positive = g.make<GT_double_EI>({sum, g.leaf_real(0.0)});
  // false and ... still computes its right side.
  EvalItem* both = g.make<AND_bool_EI>({g.leaf_bool(false), positive});
  g_calls = 0;
  run(both, 1);
  EXPECT_EQ(g_calls, 1);
  EXPECT_EQ(sum->value.d, 4.0);
  run(both, 1);
  run(sum, 1);
  EXPECT_EQ(g_calls, 1);
  run(sum, 2);
  EXPECT_EQ(g_calls, 2);
}

TEST(Ensuring, InstantaneousCycleReadsThePreviousValue) {
  // a = b + 1, b = a + 10, with no memory between them: computing a reaches
  // a again while a is being computed, and that read sees a's old value.
  Graph g;
  auto* a = g.make<PLUS_int_EI>({nullptr, g.leaf_int(1)});
  auto* b = g.make<PLUS_int_EI>({a, g.leaf_int(10)});
  a->operands[0] = b;
  a->value.i = 100;
  a->status = 0;
  run(a, 1);
  EXPECT_EQ(b->value.i, 110);
  EXPECT_EQ(a->value.i, 111);
  run(a, 2);
  EXPECT_EQ(a->value.i, 122);
}

TEST(Ensuring, DeepChainNeedsNoCallStack) {
  constexpr int kDepth = 200000;
  Graph g;
  EvalItem* one = g.leaf_int(1);
  EvalItem* x = g.leaf_int(0);
  for (int i = 0; i < kDepth; ++i) x = g.make<PLUS_int_EI>({x, one});
  EvalItem* out = g.make<OUTPUT_int_EI>({x, g.leaf_bool(true)});
  run(out, 1);
  EXPECT_EQ(out->value.i, kDepth);
  out->reset_walk();
  EXPECT_EQ(x->stamp, 0u);
  EXPECT_EQ(x->status, ST_NIL);
  EXPECT_EQ(one->stamp, 0u);
  EXPECT_EQ(one->status, 0u);  // a constant is defined again
  run(out, 1);
  EXPECT_EQ(out->value.i, kDepth);
}

TEST(Ensuring, ResetWalkStopsAtNeverComputedItems) {
  Graph g;
  EvalItem* below = g.leaf_int(2);
  EvalItem* above = g.make<UMINUS_int_EI>({below});
  run(below, 3);
  below->status = ST_DIV_ZERO;
  above->reset_walk();  // above was never computed
  EXPECT_EQ(below->stamp, 3u);
  EXPECT_EQ(below->status, ST_DIV_ZERO);
}

TEST(BaseItemFatalTest, MissingOperationsAreFatal) {
  EvalItem base(0, VK_INT);
  EXPECT_ENDS(base.compute(1), 1, "EvalItem::compute is only virtual");
  EXPECT_ENDS(base.compute_next(1), 1, "compute_next only virtual");
  EXPECT_ENDS(base.rewrite(), 1, "EvalItem::rewrite only virtual");
  EXPECT_ENDS(base.is_bottom(), 1, "EvalItem::is_bottom only virtual");
  int name = 0;
  EXPECT_NE(stderr_of([&] { name = base.extern_type_name(); }).find("called on non extern type"),
            std::string::npos);
  EXPECT_EQ(name, -1);
  base.extern_type = 12;
  EXPECT_EQ(base.extern_type_name(), 12);
}

}  // namespace
