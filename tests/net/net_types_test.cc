#include "tests/net/net_fixture.h"

namespace {

using NetTypes = NetTest;

TEST_F(NetTypes, OperatorsTakeTheirFirstOperandsTypeAndComparisonsGiveBool) {
  Exp* a = input("a", net.int_type);
  Exp* b = input("b", net.real_type);
  EXPECT_EQ(net.type(op(PLUS_n, {a, b})), net.int_type);
  EXPECT_EQ(net.type(op(PLUS_n, {b, a})), net.real_type);
  EXPECT_EQ(net.type(op(EQUAL_n, {a, b})), net.bool_type);
  EXPECT_EQ(net.type(op(NOR_n, {a, b, a})), net.bool_type);
  EXPECT_EQ(net.type(net.new_icl({b}, {2}, 1)), net.int_type);
  EXPECT_EQ(net.type(net.new_rcl({a}, {Fract(1, 2)}, 0)), net.real_type);

  Exp* c = input("c", net.bool_type);
  Exp* one = net.real_literal(id("1.0"));
  Exp* two = net.int_literal(id("2"));
  EXPECT_EQ(net.type(op(IF_n, {c, one, two})), net.real_type);
}

TEST_F(NetTypes, TypesAreCachedInTheNode) {
  Exp* a = input("a", net.int_type);
  Exp* neg = op(UMINUS_n, {a});
  EXPECT_EQ(neg->type, nullptr);
  EXPECT_EQ(net.type(neg), net.int_type);
  // A cached type is returned as it is, even if the operand changed since.
  neg->operands[0] = input("r", net.real_type);
  EXPECT_EQ(net.type(neg), net.int_type);
}

TEST_F(NetTypes, TuplesProjectionsAndCalls) {
  Exp* a = input("a", net.int_type);
  Exp* b = input("b", net.real_type);
  Exp* pair = op(TUPLE_n, {a, b});
  QvType* t = net.type(pair);
  int members[] = {id("int"), id("real")};
  EXPECT_EQ(t, net.tuple_type(members, 2));
  EXPECT_EQ(net.type(net.new_proj(pair, 2)), net.real_type);

  net.add_usr_proc(id("f"), net.int_type, t, nullptr, nullptr);
  EXPECT_EQ(net.type(net.new_call(id("f"), a)), t);

  // Projections out of range and undeclared functions: tests/hostile.
}

TEST_F(NetTypes, CyclesAndUntypedLeavesStop) {
  Exp* a = input("a", net.int_type);
  Exp* self = op(NOT_n, {a});
  self->operands[0] = self;
  EXPECT_ENDS(net.type(self), 1, "Net::type : infinite loop");

  Exp* outer = op(PLUS_n, {a, a});
  Exp* inner = op(TIMES_n, {outer, a});
  outer->operands[0] = inner;
  EXPECT_ENDS(net.type(outer), 1, "Net::type : infinite loop");
  EXPECT_ENDS(net.clock(outer), 1, "Net::clock : infinite loop");

  Exp* bare = net.new_leaf(INPUT_n, id("z"), nullptr, -1);
  EXPECT_ENDS(net.type(bare), 1, "Net::type 'INPUT_n' is not implemented");
  EXPECT_ENDS(net.clock(bare), 1, "Net::clock 'INPUT_n' is not implemented");
}

TEST_F(NetTypes, ClocksFollowTheFirstOperandOrTheWhenCondition) {
  input("c", net.bool_type);
  Exp* d = input("d", net.bool_type);
  net.add_input(id("x"), net.int_type, id("c"));
  Exp* x = net.ident_info(id("x"))->ref;
  Exp* y = input("y", net.int_type);

  EXPECT_EQ(net.clock(op(WHEN_n, {y, d})), id("d"));
  EXPECT_EQ(net.clock(op(PRE_n, {x})), id("c"));
  EXPECT_EQ(net.clock(op(ARROW_n, {x, y})), id("c"));
  EXPECT_EQ(net.clock(net.new_call(id("f"), x)), id("c"));
  EXPECT_EQ(net.clock(op(ARROW_n, {y, x})), net.true_name);
  // A when on an unnamed clock and the clock of current: tests/hostile.
}

// A left-nested sum parses without growing the parser's stack, so its depth
// is bounded only by the file's size.
TEST_F(NetTypes, DeepChainsDoNotExhaustTheStack) {
  net.add_input(id("a"), net.int_type, id("c"));
  Exp* a = net.ident_info(id("a"))->ref;
  Exp* sum = a;
  for (int i = 0; i < 1000000; ++i) sum = op(PLUS_n, {sum, a});
  EXPECT_EQ(net.type(sum), net.int_type);
  EXPECT_EQ(net.clock(sum), id("c"));
  EXPECT_EQ(sum->operand(0)->operand(0)->clock, id("c"));
}

}  // namespace
