// The operations both ways of running a step share, so that the schedule
// oracle cannot tell a fault in them: values at the edges of each kind.
#include "engine/eval_ops.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <functional>
#include <utility>

namespace {

using IntOp = unsigned (*)(int32_t, int32_t, int32_t&);

struct IntCase {
  const char* what;
  IntOp op;
  int32_t a, b;
  /// The result, or the value left alone when `status` is set.
  int32_t want;
  unsigned status;
};

const IntOp kPlus = [](int32_t a, int32_t b, int32_t& r) { return Plus{}(a, b, r); };
const IntOp kMinus = [](int32_t a, int32_t b, int32_t& r) { return Minus{}(a, b, r); };
const IntOp kTimes = [](int32_t a, int32_t b, int32_t& r) { return Times{}(a, b, r); };
const IntOp kDiv = [](int32_t a, int32_t b, int32_t& r) { return Divide{}(a, b, r); };
const IntOp kMod = [](int32_t a, int32_t b, int32_t& r) { return Modulo{}(a, b, r); };

const IntCase kIntCases[] = {
    {"sum wraps", kPlus, INT_MAX, 1, INT_MIN, 0},
    {"difference wraps", kMinus, INT_MIN, 1, INT_MAX, 0},
    {"product wraps", kTimes, INT_MAX, INT_MAX, 1, 0},
    {"product loses the high bits", kTimes, 65536, 65536, 0, 0},
    {"quotient truncates", kDiv, -7, 2, -3, 0},
    {"remainder takes the dividend's sign", kMod, -7, 2, -1, 0},
    {"remainder of a negative divisor", kMod, 7, -2, 1, 0},
    {"smallest int by -1 wraps", kDiv, INT_MIN, -1, INT_MIN, 0},
    {"anything mod -1", kMod, INT_MIN, -1, 0, 0},
    {"division by -1 negates", kDiv, 5, -1, -5, 0},
    {"division by zero", kDiv, 7, 0, 42, ST_DIV_ZERO},
    {"remainder by zero", kMod, 7, 0, 42, ST_DIV_ZERO},
};

TEST(EvalOps, IntArithmetic) {
  for (const IntCase& c : kIntCases) {
    int32_t r = 42;
    EXPECT_EQ(c.op(c.a, c.b, r), c.status) << c.what;
    EXPECT_EQ(r, c.want) << c.what;
  }
  int32_t r = 0;
  Negate{}(INT_MIN, r);
  EXPECT_EQ(r, INT_MIN);
  Negate{}(INT_MAX, r);
  EXPECT_EQ(r, -INT_MAX);
}

TEST(EvalOps, RealsDivideAndCompareAsIEEE) {
  const double nan = std::nan("");
  double q = 0;
  EXPECT_EQ(Divide{}(1.0, 0.0, q), ST_DIV_ZERO);
  EXPECT_EQ(Divide{}(1.0, -0.0, q), ST_DIV_ZERO);
  EXPECT_EQ(Divide{}(1.0, nan, q), 0u);
  EXPECT_TRUE(std::isnan(q));
  int32_t r = -1;
  Compare<std::less>{}(nan, 1.0, r);
  EXPECT_EQ(r, 0);
  Compare<std::greater_equal>{}(nan, 1.0, r);
  EXPECT_EQ(r, 0);
  Compare<std::equal_to>{}(nan, nan, r);
  EXPECT_EQ(r, 0);
  Compare<std::not_equal_to>{}(nan, nan, r);
  EXPECT_EQ(r, 1);
}

TEST(EvalOps, RealToIntTruncatesAndSaturatesLow) {
  const std::pair<double, int32_t> cases[] = {
      {-2.7, -2},           {2147483647.9, INT_MAX}, {-2147483648.9, INT_MIN},
      {1e10, INT_MIN},      {-1e10, INT_MIN},        {std::nan(""), INT_MIN},
  };
  for (auto [x, want] : cases) {
    int32_t r = 0;
    ToInt{}(x, r);
    EXPECT_EQ(r, want) << x;
  }
}

// -1 stands for nil in the table; an undefined side that does not decide
// gives its own status, both sides undefined give both.
TEST(EvalOps, ThreeValuedConnectives) {
  struct Row {
    int a, b, and_, or_, impl;
  };
  const Row rows[] = {
      {0, 0, 0, 0, 1},   {0, 1, 0, 1, 1},    {1, 0, 0, 1, 0},
      {1, 1, 1, 1, 1},   {-1, 0, 0, -1, -1}, {-1, 1, -1, 1, 1},
      {0, -1, 0, -1, 1}, {1, -1, -1, 1, -1}, {-1, -1, -1, -1, -1},
  };
  for (const Row& row : rows) {
    const unsigned sa = row.a < 0 ? unsigned{ST_NIL} : 0u;
    const unsigned sb = row.b < 0 ? unsigned{ST_DIV_ZERO} : 0u;
    const std::pair<unsigned (*)(unsigned, bool, unsigned, bool, int32_t&), int> cases[] = {
        {three_valued<And>, row.and_}, {three_valued<Or>, row.or_}, {three_valued<Implies>, row.impl}};
    for (auto [op, want] : cases) {
      SCOPED_TRACE(testing::Message() << "a=" << row.a << " b=" << row.b << " want " << want);
      int32_t r = -1;
      const unsigned status = op(sa, row.a == 1, sb, row.b == 1, r);
      if (want < 0) {
        EXPECT_EQ(status, sa | sb);
      } else {
        EXPECT_EQ(status, 0u);
        EXPECT_EQ(r, want);
      }
    }
  }
  EXPECT_TRUE(AtMostOne{}(1));
  EXPECT_FALSE(AtMostOne{}(2));
  EXPECT_FALSE(NoneTrue{}(1));
}

// An operand of another kind is read from the bits of its 8-byte field.
TEST(EvalOps, OtherKindsReadFromTheFieldsBits) {
  const EvalValue tagged{.d = std::bit_cast<double>(uint64_t{0x400400000000002a})};
  EXPECT_EQ(as_int(VK_REAL, tagged), 42);
  EXPECT_EQ(std::bit_cast<uint64_t>(as_real(VK_INT, EvalValue{.i = -1})), uint64_t{0xffffffff});
  static const char red[] = "red";
  EXPECT_EQ(as_int(VK_EXTERN, EvalValue{.s = red}), 0);
  EXPECT_EQ(as_real(VK_EXTERN, EvalValue{.s = red}), 0.0);
  EXPECT_EQ(as_name(VK_INT, EvalValue{.i = 3}), nullptr);
}

}  // namespace
