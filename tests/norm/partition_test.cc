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

TEST(PartitionTest, IdentityModeKeepsEveryNode) {
  LoadedNet loaded(
      "node n (a, b : int) returns (y, z : int);\nlet y = a + b; z = a + b; tel\n", 1);
  set_verbose_level(1);
  testing::internal::CaptureStderr();
  loaded.net->build();
  const std::string progress = testing::internal::GetCapturedStderr();
  set_verbose_level(0);
  EXPECT_EQ(progress, "start normalisation ... done\n");
  EXPECT_EQ(loaded.net->n_classes, 2);
  EXPECT_EQ(loaded.net->n_classes, loaded.net->n_nodes);
  EXPECT_NE(loaded.final("y"), loaded.final("z"));
  EXPECT_EQ(loaded.classes(), "classe @1 <=> (a)+(b)\nclasse @2 <=> (a)+(b)\n");
}

TEST(PartitionTest, ProgressMessagesReportTheReduction) {
  LoadedNet loaded(
      "node n (a, b : int) returns (y, z : int);\nlet y = a + b; z = b + a; tel\n", 0, 1);
  set_verbose_level(1);
  testing::internal::CaptureStderr();
  loaded.net->build();
  const std::string progress = testing::internal::GetCapturedStderr();
  set_verbose_level(0);
  EXPECT_EQ(progress,
            "start normalisation ... done\nBool optimization : 2 -> 2 nodes\n"
            "start minimal network generation . done (2 -> 1 nodes)\n");
}

TEST(PartitionTest, NoNodesNoClasses) {
  LoadedNet loaded(
      "node n (a : int) returns (y, z : int);\nvar w : int;\n"
      "let y = a; z = 3; w = y; tel\n");
  set_verbose_level(1);
  testing::internal::CaptureStderr();
  loaded.net->build();
  const std::string progress = testing::internal::GetCapturedStderr();
  set_verbose_level(0);
  EXPECT_NE(progress.find("start minimal network generation . done (0 -> 0 nodes)\n"),
            std::string::npos);
  EXPECT_EQ(loaded.net->n_classes, 0);
  EXPECT_EQ(loaded.final("y"), loaded.net->ident_info(loaded.table.find("a"))->ref);
  EXPECT_EQ(loaded.final("w"), loaded.final("y"));
  EXPECT_EQ(loaded.classes(), "");
}

// Classes are numbered by kind in order of first appearance, newest node
// first; a split sends the members unlike the first one to a new class at
// the end. The dump shows operands by class.
TEST(PartitionTest, ClassDump) {
  LoadedNet counter(
      "node n (reset : bool) returns (k : int);\n"
      "let k = 0 -> if reset then 0 else pre k + 1; tel\n");
  counter.net->build();
  EXPECT_EQ(counter.classes(),
            "classe @1 <=>  if (reset) then (0) else (@3)\n"
            "classe @2 <=> init(true)\n"
            "classe @3 <=> (@4)+(1)\n"
            "classe @4 <=> last(k)\n"
            "classe @5 <=>  if (@2) then (0) else (@1)\n");

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

}  // namespace
