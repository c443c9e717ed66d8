// The Boolean simplification, row by row; each operand is one of the
// constants T and F, the Boolean inputs c, a, b, or the integer input x.
// That it runs during normalisation, and only when asked, korvel-run shows
// (tests/cli/cases/norm_print and norm_stats).
#include <gtest/gtest.h>

#include "loaded_net.h"

namespace {

struct SimplifyCase {
  OpKind kind;
  const char* operands;
  /// What the result prints as.
  const char* result;
  /// Nodes made for it (a result that is an operand makes none).
  int made;
  /// Calls of make, the simplified ones included.
  int requests;
};

const SimplifyCase kRows[] = {
    {NOT_n, "T", "false", 0, 1},
    {NOT_n, "F", "true", 0, 1},
    {NOT_n, "a", "not(a)", 1, 1},
    {AND_n, "Ta", "a", 0, 1},
    {AND_n, "aF", "false", 0, 1},
    {AND_n, "Fa", "false", 0, 1},
    {AND_n, "aT", "a", 0, 1},
    {AND_n, "ab", "(a)and(b)", 1, 1},
    {OR_n, "Ta", "true", 0, 1},
    {OR_n, "aF", "a", 0, 1},
    {OR_n, "Fa", "a", 0, 1},
    {OR_n, "aT", "true", 0, 1},
    {OR_n, "FF", "false", 0, 1},
    {XOR_n, "Fa", "a", 0, 1},
    {XOR_n, "aF", "a", 0, 1},
    {XOR_n, "Ta", "not(a)", 1, 2},
    {XOR_n, "aT", "not(a)", 1, 2},
    {XOR_n, "xF", "(x)xor(false)", 1, 1},
    {NEQ_n, "Fa", "a", 0, 1},
    {NEQ_n, "aT", "not(a)", 1, 2},
    {NEQ_n, "xT", "(x)<>(true)", 1, 1},
    {IMPL_n, "Ta", "a", 0, 1},
    {IMPL_n, "aT", "true", 0, 1},
    {IMPL_n, "Fa", "true", 0, 2},
    {IMPL_n, "aF", "not(a)", 1, 2},
    {IMPL_n, "ab", "(a)=>(b)", 1, 1},
    {EQUAL_n, "Ta", "a", 0, 1},
    {EQUAL_n, "aT", "a", 0, 1},
    {EQUAL_n, "Fa", "not(a)", 1, 2},
    {EQUAL_n, "aF", "not(a)", 1, 2},
    {EQUAL_n, "xT", "(x)=(true)", 1, 1},
    {IF_n, "Tab", "a", 0, 1},
    {IF_n, "Fab", "b", 0, 1},
    {IF_n, "cTb", "(c)or(b)", 1, 2},
    {IF_n, "cFb", "(not(c))and(b)", 2, 3},
    {IF_n, "caT", "(not(c))or(a)", 2, 3},
    {IF_n, "caF", "(c)and(a)", 1, 2},
    {IF_n, "cTF", "c", 0, 2},
    {IF_n, "cab", " if (c) then (a) else (b)", 1, 1},
    {GT_n, "TF", "(true)>(false)", 1, 1},
};

TEST(BoolSimplifyTest, TableRowByRow) {
  LoadedNet loaded("node n (c, a, b : bool; x : int) returns (y : bool);\nlet y = a; tel\n",
                   {.bool_opt = true});
  NormNet& net = *loaded.net;
  const auto operand = [&](char name) -> Exp* {
    if (name == 'T') return net.true_exp;
    if (name == 'F') return net.false_exp;
    return net.ident_info(loaded.table.find("%c", name))->ref;
  };
  for (const SimplifyCase& row : kRows) {
    std::vector<Exp*> operands;
    for (const char* p = row.operands; *p; ++p) operands.push_back(operand(*p));
    const int nodes = net.n_nodes;
    const int requests = net.n_requests;
    Exp* result = net.make(row.kind, operands);
    const std::string what = std::string(op_name(row.kind)) + " " + row.operands;
    EXPECT_EQ(stdout_of([&] { print_exp(result, loaded.table); }), row.result) << what;
    EXPECT_EQ(net.n_nodes - nodes, row.made) << what;
    EXPECT_EQ(net.n_requests - requests, row.requests) << what;
  }
}

}  // namespace
