// Parsing qv source held in memory: the text ends where its view ends, any
// byte of it is a character, and the parser keeps its file limits.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "net/net.h"
#include "reader/parser.h"
#include "tests/common/test_io.h"

namespace {

struct TextParse {
  /// What QvParseText returns, -1 when it ends the process instead.
  int parse(std::string_view source) {
    int result = -1;
    out = stdout_of([&] {
      try {
        result = QvParseText(&net, &table, source);
      } catch (const ProcessEnd&) {
      }
    });
    return result;
  }

  SymbolTable table;
  Net net{&table};
  std::string out;
};

std::string nested(int depth) {
  return "node n (a : int) returns (b : int); let b = " + std::string(depth, '(') + "a" +
         std::string(depth, ')') + "; tel\n";
}

TEST(ParseText, ReadsUpToTheEndOfTheViewOnly) {
  const std::string buffer =
      "node n (a : int) returns (b : int);\nlet b = a + 1; tel\nthis is not qv";
  TextParse p;
  EXPECT_EQ(p.parse(std::string_view(buffer).substr(0, buffer.find("this"))), 0);
  EXPECT_EQ(p.out, "");
  EXPECT_EQ(p.net.node_name, p.table.find("n"));
  EXPECT_EQ(p.net.n_inputs, 1);
  EXPECT_EQ(p.net.n_outputs, 1);
}

TEST(ParseText, HighByteIsAnUnknownCharacterNotTheEnd) {
  TextParse p;
  EXPECT_EQ(p.parse("node n \xff"), -1);
  EXPECT_EQ(p.out, "qv2rb lex error : unknown char '255' (\xff), line '1'\n");
}

// 491 parentheses fill the 500 states of the parser's stack; one more
// overflows it.
TEST(ParseText, StackOverflowAtTheClassicDepth) {
  TextParse deepest;
  EXPECT_EQ(deepest.parse(nested(491)), 0);
  EXPECT_EQ(deepest.out, "");
  TextParse over;
  EXPECT_EQ(over.parse(nested(492)), 1);
  EXPECT_EQ(over.out, "yacc stack overflow     - at line 1\n");
}

}  // namespace
