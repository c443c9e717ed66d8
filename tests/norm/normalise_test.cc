// The normal forms, checked on the printed normalised net.
#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <string>
#include <vector>

#include "loaded_net.h"

namespace {

struct NormalFormCase {
  const char* what;
  const char* source;
  const char* printed;
};

// The forms korvel-run prints for a whole program (tests/cli/cases/norm_print)
// are not repeated here; these are the corners that program does not reach.
const NormalFormCase kNormalForms[] = {
    {"when on an expression, a local on a clock and an assertion",
     "node n (c : bool; x : int) returns ((y : int) when c);\nvar (k : int) when c;\n"
     "let y = k + 1; k = x when c; assert c or x > 0; tel\n",
     "\n***********NORMALISATION\nOUTPUTS :\n"
     "y =  if (c) then ((k)+(1)) else (bottom)\n"
     "LOCALS :\n"
     "k = x\n"
     "ASSERTIONS :\n"
     "assert (c)or((x)>(0))\n"},
    {"calls on a clock hold a tuple argument only",
     "function f (a : int; b : int) returns (r : int);\n"
     "function g (a : int) returns (r : int);\n"
     "node n (c : bool; (x, z : int) when c; u, v : int)\n"
     "returns ((y, s : int) when c; t : int);\n"
     "let y = f(x, z); s = g(x); t = f(u, v); tel\n",
     "\n***********NORMALISATION\nOUTPUTS :\n"
     "y =  if (c) then (f( if (c) then ((x, z)) else (bottom))) else (bottom)\n"
     "s =  if (c) then (g(x)) else (bottom)\n"
     "t = f(u, v)\n"
     "LOCALS :\nASSERTIONS :\n"},
};

TEST(NormaliseTest, NormalForms) {
  for (const NormalFormCase& c : kNormalForms) {
    LoadedNet loaded(c.source);
    loaded.net->build();
    EXPECT_EQ(loaded.printed(), c.printed) << c.what;
    EXPECT_EQ(loaded.net->n_requests, loaded.net->n_nodes) << c.what;
  }
}

// Memoised per clock: one activation chain and one first-instant node per
// clock, however many expressions use them (for the base clock, the node
// counts of tests/cli/cases/norm_stats show it).
TEST(NormaliseTest, ClockNodesAreMadeOncePerClock) {
  // y: the activation of d, x held, the memory, y held (4 nodes); v: x held
  // again, its memory, the choice and v held on c (4 more).
  LoadedNet clocks(
      "node n (c : bool; (d : bool) when c; (x : int) when d)\n"
      "returns ((y : int) when d; (v : int) when c);\n"
      "let y = pre x; v = current x; tel\n");
  clocks.net->normalise_all();
  EXPECT_EQ(clocks.net->n_nodes, 8);
}

// Long programs go through references, so nothing recurses per equation.
TEST(NormaliseTest, LongChainsOfEquationsLoad) {
  const int n = 20000;
  std::string source = "node n (x0 : int) returns (y : int);\nvar ";
  for (int i = 1; i <= n; ++i) source += "x" + std::to_string(i) + (i < n ? ", " : " : int;\n");
  source += "let\n";
  for (int i = 1; i <= n; ++i) {
    source += "x" + std::to_string(i) + " = x" + std::to_string(i - 1) + (i % 2 ? " + 1;\n" : ";\n");
  }
  source += "y = x" + std::to_string(n) + ";\ntel\n";
  LoadedNet loaded(source, {.minimise = false});
  loaded.net->build();
  EXPECT_EQ(loaded.net->n_classes, n / 2);
  Exp* y = loaded.final("y");
  ASSERT_EQ(y->op, PLUS_n);
  EXPECT_EQ(y->operand(0), loaded.final(("x" + std::to_string(n - 2)).c_str()));
}

// The translation hands make a view of its own value stack, which it
// overwrites at once: the node must hold copies, in order.
TEST(NormaliseTest, MadeNodesCopyTheirOperandsOutOfTheCallersArray) {
  LoadedNet loaded("node n (a, b, c : int) returns (y : int);\nlet y = a; tel\n");
  NormNet& net = *loaded.net;
  std::vector<Exp*> stack = {net.true_exp, loaded.final("a"), net.false_exp, net.bottom_exp};
  Exp* node = net.make(IF_n, std::span<Exp* const>(stack).subspan(1, 3));
  std::fill(stack.begin(), stack.end(), net.nil_exp);
  ASSERT_EQ(node->arity(), 3);
  EXPECT_EQ(node->operand(0), loaded.final("a"));
  EXPECT_EQ(node->operand(1), net.false_exp);
  EXPECT_EQ(node->operand(2), net.bottom_exp);
}

// Operands come back from the value stack in the order written, at every
// depth: a nest deeper than the stacks first hold, of a kind where the
// order shows, and memories inside so that both rules nest.
TEST(NormaliseTest, DeepNestsKeepTheirOperandOrder) {
  const int depth = 40;
  std::string nest = "x";
  std::string form = "x";
  for (int i = 1; i <= depth; ++i) {
    nest = std::to_string(i) + " - " + (i % 3 ? "(" + nest + ")" : "pre (" + nest + ")");
    form = "(" + std::to_string(i) + ")-(" + (i % 3 ? form : "last(" + form + ")") + ")";
  }
  LoadedNet loaded("node n (x : int) returns (y : int);\nlet y = " + nest + "; tel\n",
                   {.minimise = false});
  loaded.net->build();
  // The printer breaks long lines; the form is compared unbroken.
  std::string printed = loaded.printed();
  std::erase(printed, '\n');
  EXPECT_NE(printed.find("y = " + form + "LOCALS :"), std::string::npos) << printed;
}

}  // namespace
