#include "support/pty_stream.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/common/test_io.h"

namespace {

// The text written so far to a temporary stream.
std::string contents(PtyStream& s) {
  s.flush();
  return file_text(s.stream());
}

}  // namespace

TEST(PtyStreamTest, BreaksLinesBeforeTheWidth) {
  auto s = PtyStream::temporary(80);
  s->print("%s", std::string(75, 'x').c_str());
  EXPECT_EQ(s->column(), 75);
  s->print("abcde");
  EXPECT_EQ(s->column(), 5);
  s->print(42);
  s->print(1.5f);
  EXPECT_EQ(contents(*s), std::string(75, 'x') + "\nabcde421.500000");
  // A piece longer than the width stands alone on its line.
  s->print("%s", std::string(100, 'y').c_str());
  EXPECT_EQ(s->column(), 100);
}

TEST(PtyStreamTest, IndentsNewLines) {
  auto s = PtyStream::temporary(80);
  s->tab();
  s->tab();
  s->print("a\nb");
  EXPECT_EQ(s->column(), 7);
  s->print("\n");
  s->newline_flat();
  s->untab();
  s->print("c\n\n");
  EXPECT_EQ(contents(*s), "a\n      b\n      \nc\n   \n   ");
  EXPECT_EQ(s->column(), 3);
}

TEST(PtyStreamTest, UnitsAreTruncatedAndLongTextsFit) {
  std::string unit = "<" + std::string(40, '-') + ">";
  auto s = PtyStream::temporary(10, unit.c_str());
  s->tab();
  s->newline();
  EXPECT_EQ(s->column(), PtyStream::kMaxUnit);
  std::string big(5000, 'z');
  s->print("%s%s", big.c_str(), big.c_str());
  EXPECT_EQ(contents(*s), "\n" + unit.substr(0, PtyStream::kMaxUnit) + "\n" + big + big);
}

TEST(PtyStreamTest, UntabAtZeroIsReported) {
  PtyStream s(stdout, 80);
  EXPECT_EQ(stderr_of([&] { s.untab(); }), "PtyStream::untab : unbalanced untab\n");
  EXPECT_EQ(s.level(), 0);
  s.tab();
  EXPECT_EQ(s.level(), 1);
}

TEST(PtyStreamTest, CopyTakesTheTargetIndentation) {
  auto text = PtyStream::temporary(80);
  text->print("x = 1;\ny = 2;");
  auto out = PtyStream::temporary(80, "  ");
  out->print("let");
  out->tab();
  out->newline();
  out->copy(*text);
  EXPECT_EQ(contents(*out), "let\n  x = 1;\n  y = 2;");
  EXPECT_EQ(out->column(), 8);
}

TEST(PtyStreamTest, NamedStreams) {
  { PtyStream err("stderr", 80); }
  EXPECT_NE(fcntl(2, F_GETFD), -1);  // descriptor 2 is still open
  EXPECT_ENDS(PtyStream("/nonexistent/dir/file", 80), 1,
              "^can't open file '/nonexistent/dir/file'\n$");
}
