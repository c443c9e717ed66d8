// The reader used for one program after another in one process, as the
// unit tests and the fuzz targets use it.
#include <gtest/gtest.h>

#include <string>

#include "net/net.h"
#include "reader/lexer.h"
#include "reader/parser.h"
#include "tests/common/test_io.h"

namespace {

// Each program is refused while the parser's stack holds lists of names or
// of expressions, by a fatal report unwinding through the parser or by a
// syntax error. Under the sanitizers, the leak checker fails this program
// when a refusal leaves one of those lists behind.
TEST(RepeatedReads, RefusalsFreeTheListsTheParserHeld) {
  struct Refusal {
    const char* what;
    std::string source;
    const char* out;
    const char* err;
  };
  const std::string node = "node n (a : int) returns (c, d : int);\nlet\n";
  const Refusal refusals[] = {
      {"names of inputs, at a lexical error", "node n (a, b $ : int) returns (c : int);\n",
       "qv2rb lex error : unknown char '36' ($), line '1'\n", ""},
      {"parameters of a function, at a lexical error", "function f (x : int; y $\n",
       "qv2rb lex error : unknown char '36' ($), line '1'\n", ""},
      {"names of a tuple and operands, at an undeclared name",
       node + "(c, d) = (a, #(a, zz));\ntel\n", "",
       "qvnet::GetIdentInfo : undeclared ident 'zz'\n"},
      {"arguments of a call, at a syntax error", node + "c = f(a, a; tel\n",
       "syntax error     - at line 3\n", ""},
  };
  for (const Refusal& r : refusals) {
    SCOPED_TRACE(r.what);
    ProgramFile file(r.source);
    SymbolTable table;
    Net net(&table);
    int result = -1;
    Ending ending;
    const std::string out = stdout_of(
        [&] { ending = ending_of([&] { result = QvParse(&net, &table, file.path()); }); });
    // Refused either way: the parse returns 1, or the process ends with 1.
    EXPECT_EQ(ending.status == -1 ? result : ending.status, 1);
    EXPECT_EQ(out, r.out);
    EXPECT_EQ(ending.err, r.err);
  }
}

// The report of a NUL character gives the count of characters the process
// has read, over every file; a process standing for several starts it again.
TEST(RepeatedReads, CharacterCountStartsAgainWhenReset) {
  ProgramFile file(std::string("(* \0 *) a\n", 10));
  auto tokens = [&] { return stdout_of([&] { EXPECT_EQ(QvLexTest(file.path()), 0); }); };
  reset_characters_read();
  const std::string first = tokens();
  EXPECT_EQ(first, "ICI (car 4)\na (*XIdf*)\n");
  EXPECT_NE(tokens(), first);
  reset_characters_read();
  EXPECT_EQ(tokens(), first);
}

}  // namespace
