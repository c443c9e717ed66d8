// Operands coded once through references, as the partition and the rebuild
// read them.
#include <gtest/gtest.h>

#include "loaded_net.h"
#include "norm/operand_codes.h"

namespace {

const char* const kProgram =
    "node n (a, b : int) returns (y, z : int);\nvar w : int;\n"
    "let w = a + b; y = w * a; z = y - w; tel\n";

Exp* made_node(NormNet& net, OpKind kind) {
  for (NormNet::Cell* cell = net.made; cell; cell = cell->next) {
    if (cell->node->op == kind) return cell->node;
  }
  return nullptr;
}

// A reference reads as the number its definition carries, a leaf as a
// code below 0 that is the same wherever the leaf occurs; finish gives the
// leaves their number of 0 back and keeps their codes readable.
TEST(OperandCodesTest, ReferencesAreFollowedAndLeavesCodedOnce) {
  LoadedNet loaded(kProgram);
  NormNet& net = *loaded.net;
  net.normalise_all();
  Exp* plus = made_node(net, PLUS_n);
  Exp* times = made_node(net, TIMES_n);
  Exp* minus = made_node(net, MINUS_n);
  ASSERT_TRUE(plus && times && minus);
  plus->class_no = 7;
  times->class_no = 8;
  OperandCodes codes;
  codes.add(net, minus);
  codes.add(net, plus);
  codes.add(net, times);
  codes.finish();
  ASSERT_EQ(codes.entries(), 3u);
  // z = y - w: both operands are references to made nodes.
  ASSERT_EQ(codes.size(0), 2u);
  EXPECT_EQ(codes.of(0)[0], 8);
  EXPECT_EQ(codes.of(0)[1], 7);
  // w = a + b and y = w * a: a is coded once, b apart from it.
  ASSERT_EQ(codes.size(1), 2u);
  const int a = codes.of(1)[0];
  const int b = codes.of(1)[1];
  EXPECT_LT(a, 0);
  EXPECT_LT(b, 0);
  EXPECT_NE(a, b);
  EXPECT_EQ(codes.of(2)[0], 7);
  EXPECT_EQ(codes.of(2)[1], a);
  EXPECT_EQ(codes.leaf(a), plus->operand(0));
  EXPECT_EQ(codes.leaf(b), plus->operand(1));
  EXPECT_EQ(codes.leaf(a)->class_no, 0);
  EXPECT_EQ(codes.leaf(b)->class_no, 0);
}

// With one class per node, every representative's operands are
// representatives or leaves, as with the minimal network.
TEST(OperandCodesTest, IdentityRepresentativesReferToRepresentatives) {
  LoadedNet loaded(kProgram, {.minimise = false});
  loaded.net->build();
  Exp* z = loaded.final("z");
  ASSERT_EQ(z->op, MINUS_n);
  for (Exp* o : z->operands) {
    ASSERT_NE(o->class_no, 0);
    EXPECT_EQ(o, loaded.net->class_reps[o->class_no - 1]);
  }
  EXPECT_EQ(z->operand(0), loaded.final("y"));
  EXPECT_EQ(z->operand(1)->op, PLUS_n);
  EXPECT_EQ(z->operand(1)->operand(0)->op, INPUT_n);
}

}  // namespace
