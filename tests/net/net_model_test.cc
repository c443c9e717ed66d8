#include "tests/net/net_fixture.h"

namespace {

using NetModel = NetTest;

TEST_F(NetModel, EnumConstantsArePositionedFromTheEndOfTheList) {
  net.add_usr_const(id("k"), net.int_type, net.true_name);
  int abc[] = {id("a"), id("b"), id("c")};
  net.declare_enum_type(id("t"), new IndexList(abc, 3));

  QvType* t = named("t");
  EXPECT_EQ(t->number, 1);
  EXPECT_EQ(t->enum_count, 3);
  EXPECT_EQ(net.n_types, 1);
  EXPECT_EQ(net.n_usr_consts, 4);
  // a comes first in the list, so it takes the highest position.
  const char* by_position[] = {"c", "b", "a"};
  for (int pos = 0; pos < 3; ++pos) {
    IdentInfo* info = t->enum_const(pos);
    EXPECT_EQ(info->name, id(by_position[pos]));
    EXPECT_EQ(info->number, pos);
    EXPECT_EQ(info->ref->type, t);
  }
  // k came first, so the constants' user-constant indices start at 1.
  EXPECT_EQ(net.ident_info(id("a"))->value, 1);
  EXPECT_EQ(net.ident_info(id("c"))->value, 3);
  EXPECT_EQ(net.ident_info(id("k"))->get_usr_const_index(), 0);
  EXPECT_EQ(IndexList::length(net.int_type->consts), 1);
  EXPECT_EQ(t->consts, nullptr);
}

TEST_F(NetModel, AccessorsOnTheWrongRecordStop) {
  Exp* x = input("x", net.int_type);
  Exp* call = net.new_call(id("f"), x);
  EXPECT_ENDS(call->projection_order(), 1,
              "Exp::projection_order called on 'CALL_n' operator");
  EXPECT_ENDS(net.int_type->enum_const(0), 1, "called on non enumerate type");
  EXPECT_ENDS(net.ident_info(id("x"))->get_usr_const_index(), 1,
              "get_usr_const_index called on no usr const");
  EXPECT_ENDS(net.new_exp(PLUS_n, {x}), 1, "'PLUS_n' needs 2 operands");
}

TEST_F(NetModel, TupleTypesAreUnique) {
  int one[] = {id("int")};
  EXPECT_EQ(net.tuple_type(one, 1), net.int_type);

  int pair[] = {id("int"), id("real")};
  QvType* t = net.tuple_type(pair, 2);
  EXPECT_EQ(t->is_tuple, 1);
  EXPECT_EQ(net.types, t);
  EXPECT_EQ(net.tuple_type(new IndexList(pair, 2)), t);
  int swapped[] = {id("real"), id("int")};
  EXPECT_NE(net.tuple_type(swapped, 2), t);
  EXPECT_EQ(net.named_type(id("int")), net.int_type);
}

TEST_F(NetModel, LiteralsAreMadeOncePerText) {
  Exp* first = net.int_literal(id("42"));
  EXPECT_EQ(net.int_literal(id("42")), first);
  IdentInfo* info = net.ident_info(id("42"));
  EXPECT_EQ(info->kind, ID_INT_LIT);
  EXPECT_EQ(info->value, 42);
  EXPECT_EQ(first->type, net.int_type);
  EXPECT_EQ(first->clock, net.true_name);

  net.real_literal(id("2.5"));
  EXPECT_EQ(net.ident_info(id("2.5"))->real_value, 2.5f);
  EXPECT_EQ(net.ident_info(id("2.5"))->ref->type, net.real_type);
  // A literal too large for 32 bits: tests/hostile/cases/long_lexemes.
}

TEST_F(NetModel, MarksKeepOneValuePerKey) {
  Exp* e = net.new_blank();
  EXPECT_EQ(e->get_mark(4), 0);
  e->set_mark(3, 30);
  e->set_mark(5, 50);
  e->set_mark(4, 40);
  e->set_mark(4, 41);
  EXPECT_EQ(e->marks.size(), 3u);
  EXPECT_EQ(e->get_mark(5), 50);
  EXPECT_EQ(e->get_mark(4), 41);
  EXPECT_EQ(e->get_mark(3), 30);
  EXPECT_EQ(e->get_mark(2), 0);

  int k = new_pass_key();
  EXPECT_GT(k, 0);
  EXPECT_EQ(new_pass_key(), k + 1);
}

TEST_F(NetModel, AssertionsAreNumberedAndTakeTheExpressionsClock) {
  net.add_input(id("c"), net.bool_type, net.true_name);
  net.add_input(id("x"), net.int_type, id("c"));
  Exp* x = net.ident_info(id("x"))->ref;
  Exp* test = op(GT_n, {x, net.int_literal(id("0"))});
  net.add_assert(test);
  net.add_assert(op(NOT_n, {net.false_exp}));

  IdentInfo* first = net.ident_info(id("__assert_0"));
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->kind, ID_ASSERT);
  EXPECT_EQ(first->def, test);
  EXPECT_EQ(first->clock, id("c"));
  EXPECT_EQ(test->type, net.bool_type);
  EXPECT_EQ(test->clock, id("c"));
  EXPECT_NE(net.ident_info(id("__assert_1")), nullptr);
  EXPECT_EQ(net.n_asserts, 2);
}

TEST_F(NetModel, DefinitionsTakeTheDeclaredTypeAndClock) {
  Exp* x = input("x", net.int_type);
  net.add_output(id("y"), net.real_type, id("x"));
  Exp* e = op(PLUS_n, {x, x});
  net.define(id("y"), e);
  EXPECT_EQ(net.ident_info(id("y"))->def, e);
  EXPECT_EQ(e->type, net.real_type);
  EXPECT_EQ(e->clock, id("x"));

  net.add_local(id("p"), net.int_type, net.true_name);
  net.add_local(id("q"), net.real_type, net.true_name);
  int pq[] = {id("p"), id("q")};
  Exp* call = net.new_call(id("f"), x);
  net.define_tuple(new IndexList(pq, 2), call);
  IdentInfo* q = net.ident_info(id("q"));
  EXPECT_EQ(q->def->op, PROJ_n);
  EXPECT_EQ(q->def->projection_order(), 2);
  EXPECT_EQ(q->def->operand(0), call);
  EXPECT_EQ(q->def->type, net.real_type);
  EXPECT_EQ(net.tuple_names(id("q")), net.tuple_names(id("p")));
  EXPECT_EQ(net.tuple_names(id("q"))->value, id("p"));
}

}  // namespace

// Nodes come from blocks: many blocks' worth keep their addresses and
// fields as more are made, and a cleared store makes nodes again.
TEST(NodeStoreTest, NodesStayWhereTheyWereMade) {
  NodeStore store;
  std::vector<Exp*> made;
  for (int i = 0; i < 5000; ++i) {
    Exp e;
    e.ident = i + 1;
    e.operands = store.operands(made.empty() ? nullptr : &made.back(), made.empty() ? 0 : 1);
    made.push_back(store.add(std::move(e)));
  }
  EXPECT_EQ(store.size(), 5000u);
  for (int i = 0; i < 5000; ++i) {
    ASSERT_EQ(made[i]->ident, i + 1);
    ASSERT_EQ(made[i]->arity(), i == 0 ? 0 : 1);
    if (i > 0) {
      ASSERT_EQ(made[i]->operand(0), made[i - 1]);
    }
  }
  store.clear();
  EXPECT_EQ(store.size(), 0u);
  EXPECT_EQ(store.add(Exp{})->op, ERROR_n);
  EXPECT_EQ(store.size(), 1u);
}
