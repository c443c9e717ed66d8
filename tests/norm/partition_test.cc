// Which nodes the minimal network merges, and its dump.
#include <gtest/gtest.h>

#include "loaded_net.h"
#include "support/diagnostics.h"

namespace {

struct MergeCase {
  const char* what;
  const char* equations;
  bool merged;
};

// Every case defines the outputs y and z over the inputs a, b (int),
// c, d (bool), and may use the functions f, g and h.
const MergeCase kMergeCases[] = {
    {"equal expressions", "y = a * b + 1; z = a * b + 1;", true},
    {"symmetric kind, operands swapped", "y = a + b; z = b + a;", true},
    {"symmetric kind nested", "y = (a * b) + (b - a); z = (b - a) + (b * a);", true},
    {"every symmetric kind", "y = if (c and d) or (c xor d) or (c = d) or (c <> d) then 1 else 0;"
                             "z = if (d and c) or (d xor c) or (d = c) or (d <> c) then 1 else 0;",
     true},
    {"non-symmetric kind, operands swapped", "y = a - b; z = b - a;", false},
    {"comparison is not symmetric", "y = if a < b then 1 else 0; z = if b < a then 1 else 0;",
     false},
    {"same operands, different kinds", "y = a * b; z = a + b;", false},
    {"recursive counters", "y = 0 -> pre y + 1; z = 0 -> pre z + 1;", true},
    {"counters with different steps", "y = 0 -> pre y + 1; z = 0 -> pre z + 2;", false},
    {"mutually recursive pair against a self loop",
     "y = 0 -> pre z + 1; z = 0 -> pre y + 1;", true},
    {"same recursion, different start", "y = 0 -> pre y + 1; z = 1 -> pre z + 1;", false},
    {"projections of one call at different positions", "(y, z) = h(a);", false},
    {"different functions on one argument", "y = f(a); z = g(a);", false},
    {"one function on one argument", "y = f(a + 1); z = f(1 + a);", true},
    {"a reference and its definition", "y = a + b; z = y;", true},
};

TEST(PartitionTest, MergesExactlyTheEquivalentNodes) {
  for (const MergeCase& c : kMergeCases) {
    LoadedNet loaded(std::string("function f (x : int) returns (r : int);\n"
                                 "function g (x : int) returns (r : int);\n"
                                 "function h (x : int) returns (p : int; q : int);\n"
                                 "node n (a, b : int; c, d : bool) returns (y, z : int);\n"
                                 "let ") +
                     c.equations + " tel\n");
    loaded.net->build();
    Exp* y = loaded.final("y");
    Exp* z = loaded.final("z");
    EXPECT_EQ(y == z, c.merged) << c.what;
    EXPECT_LE(loaded.net->n_classes, loaded.net->n_nodes) << c.what;
    if (!c.merged) continue;
    // Merged nodes are copies whose operands are representatives or leaves.
    for (Exp* o : y->operands) {
      EXPECT_NE(o->op, QVREF_n) << c.what;
      if (o->class_no == 0) continue;
      EXPECT_EQ(o, loaded.net->class_reps[o->class_no - 1]) << c.what;
    }
  }
}

struct ProgressCase {
  const char* what;
  const char* equations;
  LoadOptions options;
  const char* progress;
  int classes;
};

const ProgressCase kProgress[] = {
    {"identity mode keeps every node",
     "y = a + b; z = a + b; w = y;",
     {.minimise = false},
     "start normalisation ... done\n",
     2},
    {"the reduction, after the Boolean pass",
     "y = a + b; z = b + a; w = y;",
     {.bool_opt = true},
     "start normalisation ... done\nBool optimization : 2 -> 2 nodes\n"
     "start minimal network generation . done (2 -> 1 nodes)\n",
     1},
    {"no nodes, no classes",
     "y = a; z = 3; w = y;",
     {},
     "start normalisation ... done\nstart minimal network generation . done (0 -> 0 nodes)\n",
     0},
};

TEST(PartitionTest, ProgressMessagesReportTheReduction) {
  for (const ProgressCase& c : kProgress) {
    LoadedNet loaded(std::string("node n (a, b : int) returns (y, z : int);\nvar w : int;\nlet ") +
                         c.equations + " tel\n",
                     c.options);
    set_verbose_level(1);
    EXPECT_EQ(stderr_of([&] { loaded.net->build(); }), c.progress) << c.what;
    set_verbose_level(0);
    EXPECT_EQ(loaded.net->n_classes, c.classes) << c.what;
  }
}

// Classes are numbered by kind in order of first appearance, newest node
// first; the dump shows operands by class. korvel-run's dump of a whole
// program (tests/cli/cases/norm_print) has no call, so it is here.
TEST(PartitionTest, ClassDumpOfACall) {
  LoadedNet calls(
      "function f (x : int; y : int) returns (p : int; q : int);\n"
      "node n (a, b : int) returns (s, t : int);\n"
      "let (s, t) = f(a, b); tel\n");
  calls.net->build();
  EXPECT_EQ(calls.classes(),
            "classe @1 <=> proj_1(@2)\n"
            "classe @2 <=> f(a, b)\n"
            "classe @3 <=> (a, b)\n"
            "classe @4 <=> proj_2(@2)\n");
}

// Members that differ from the first leave their class together, in
// reverse order, and are numbered as they leave; the numbers and the
// representative of each class depend on that order. Two chains that merge
// only at their first sum and a memory over shared sums show it.
TEST(PartitionTest, ClassesAreNumberedAsTheyLeave) {
  LoadedNet chains(
      "node n (a, b : int) returns (y, z, w : int);\n"
      "let y = a + b + a + b + a; z = b + a + b + a + b;\n"
      "    w = 0 -> pre (w + a) + (b + a) * (a + b); tel\n");
  chains.net->build();
  EXPECT_EQ(chains.classes(),
            "classe @1 <=>  if (@2) then (0) else (@6)\n"
            "classe @2 <=> init(true)\n"
            "classe @3 <=> (a)+(b)\n"
            "classe @4 <=> (@3)*(@3)\n"
            "classe @5 <=> last(@8)\n"
            "classe @6 <=> (@5)+(@4)\n"
            "classe @7 <=> (@3)+(a)\n"
            "classe @8 <=> (w)+(a)\n"
            "classe @9 <=> (@7)+(b)\n"
            "classe @10 <=> (@12)+(b)\n"
            "classe @11 <=> (@9)+(a)\n"
            "classe @12 <=> (@13)+(a)\n"
            "classe @13 <=> (@3)+(b)\n");
}

}  // namespace
