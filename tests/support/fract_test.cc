#include "support/fract.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "tests/common/test_io.h"

namespace {

std::string text_of(const Fract& f) {
  return stdout_of([&] { f.print(); });
}

Fract from_text(const char* text) {
  Fract f;
  f = text;
  return f;
}

}  // namespace

TEST(FractTest, NormalisesSignAndCommonFactors) {
  EXPECT_EQ(text_of(Fract(6, -4)), "-3/2");
  EXPECT_EQ(text_of(Fract(0, -7)), "0");
  EXPECT_EQ(Fract(0, -7).denominator(), 1);
  EXPECT_EQ(text_of(Fract(1, 1000)), "1/1000");
  EXPECT_EQ(text_of(Fract(-12, -18)), "2/3");
  EXPECT_EQ(text_of(Fract(-1, 3)), "-1/3");
  EXPECT_EQ(gcd(-12, 18), 6);
  EXPECT_EQ(lcm(-4, 6), -12);
  EXPECT_ENDS(Fract(5, 0), 1, "^Fract::Fract: division by zero\n$");
}

TEST(FractTest, Arithmetic) {
  EXPECT_EQ(Fract(1, 2) + Fract(1, 3), Fract(5, 6));
  EXPECT_EQ(text_of(Fract(1, 2) + Fract(1, 2)), "1");
  EXPECT_EQ(Fract(1, 2) - Fract(1, 3), Fract(1, 6));
  EXPECT_EQ(Fract(2, 3) * Fract(-9, 4), Fract(-3, 2));
  EXPECT_EQ(Fract(2, 3) / Fract(-4, 9), Fract(-3, 2));
  EXPECT_EQ(-Fract(2, 3), Fract(-2, 3));
  EXPECT_EQ(abs(Fract(-2, 3)), Fract(2, 3));
  EXPECT_EQ(abs(Fract(2, 3)), Fract(2, 3));
  EXPECT_EQ(Fract(1, 8).todouble(), 0.125);
  EXPECT_ENDS(Fract(1, 2) / Fract(0), 1, "^Fract::Fract: division by zero\n$");
}

TEST(FractTest, ArithmeticWrapsWithoutTrapping) {
  EXPECT_EQ(Fract(INT_MAX) + Fract(1), Fract(INT_MIN));
  EXPECT_EQ(Fract(65536) * Fract(65536), Fract(0));
  EXPECT_EQ(-Fract(INT_MIN), Fract(INT_MIN));
  EXPECT_EQ(Fract(INT_MIN, 2), Fract(-(1 << 30)));
  EXPECT_TRUE(Fract(INT_MAX) + Fract(1) < 0);
}

TEST(FractTest, ComparisonsWithFractsAndInts) {
  EXPECT_FALSE(Fract(5, 6) == 5);
  EXPECT_TRUE(Fract(5, 1) == 5);
  EXPECT_TRUE(5 == Fract(5));
  EXPECT_TRUE(Fract(5, 6) != 1);
  EXPECT_TRUE(Fract(1, 3) < Fract(1, 2));
  EXPECT_TRUE(Fract(1, 2) <= Fract(2, 4));
  EXPECT_FALSE(Fract(1, 3) > Fract(1, 2));
  EXPECT_TRUE(Fract(-1, 2) >= -1);
  EXPECT_TRUE(0 < Fract(1, 9));
  EXPECT_FALSE(1 <= Fract(1, 9));
}

TEST(FractTest, ReadsDecimalTexts) {
  EXPECT_EQ(from_text("0.125"), Fract(1, 8));
  EXPECT_EQ(from_text("-2.50"), Fract(-5, 2));
  EXPECT_EQ(from_text("3e2"), Fract(300));
  EXPECT_EQ(from_text("1.5E-1"), Fract(3, 20));
  EXPECT_EQ(from_text("2."), Fract(2));
  EXPECT_EQ(from_text("7.000"), Fract(7));
  EXPECT_EQ(from_text("0.10000000000000"), Fract(1, 10));  // trailing zeros cost nothing
  EXPECT_EQ(from_text("25E+1"), Fract(250));
  EXPECT_EQ(from_text("0e-400"), Fract(0));
}

TEST(FractTest, TextOverflowIsFatal) {
  const char* message = "^Fract::operator=\\(char\\*\\) : arithmetic overflow while parsing '%s'\n$";
  for (const char* text : {"12345678901", "1e10", "1e-10", "0.00000000001", "1e99999999999"}) {
    char pattern[160];
    snprintf(pattern, sizeof pattern, message, text);
    SCOPED_TRACE(text);
    EXPECT_ENDS(from_text(text), 1, pattern);
  }
}
