#include "net/netctr.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "net/net.h"
#include "tests/common/test_io.h"

namespace {

using testing::HasSubstr;

class NetCtrTest : public testing::Test {
 protected:
  Exp* input(const char* name) {
    int n = table.intern("%s", name);
    net.add_input(n, net.int_type, net.true_name);
    return net.ident_info(n)->ref;
  }

  SymbolTable table;
  Net net{&table};
  NetCtr ctr{&net};
};

TEST_F(NetCtrTest, PlaceholderIsBlankAndFilledOnce) {
  Exp* p = ctr.placeholder();
  EXPECT_EQ(p->op, ERROR_n);
  EXPECT_EQ(p->arity(), 0);
  EXPECT_EQ(p->type, nullptr);
  EXPECT_EQ(p->clock, -1);

  Exp* a = input("a");
  Exp filled;
  filled.op = PROJ_n;
  filled.param = 2;
  filled.class_no = 4;
  filled.operands = net.new_operands(std::span(&a, 1));
  ctr.update(p, filled);
  EXPECT_EQ(p->op, PROJ_n);
  EXPECT_EQ(p->param, 2);
  EXPECT_EQ(p->class_no, 4);
  ASSERT_EQ(p->arity(), 1);
  EXPECT_EQ(p->operand(0), a);

  EXPECT_ENDS(ctr.update(p, filled), 1,
              HasSubstr("Sorry, Internal Error :\nfile 'netctr':\nbuild_net : NetCtr::update : "
                        "already updated expression\n"));
}

TEST_F(NetCtrTest, LeavesAndLinearFormsAreRefused) {
  const std::pair<Exp*, std::string> refused[] = {
      {net.true_exp, "CONST_n"},
      {input("a"), "INPUT_n"},
      {net.new_icl({input("b")}, {2}, 1), "ICL_n"}};
  for (const auto& [e, kind] : refused) {
    EXPECT_ENDS(ctr.put_in_hash_tab(e), 1,
                HasSubstr("file 'netctr' :\nNetCtr::put_in_hash_tab : unexpected '" + kind +
                          "' expression\n"));
  }
}

// The kind does not enter the bucket: nodes over the same operands chain.
TEST_F(NetCtrTest, SameOperandsShareABucketWhateverTheKind) {
  Exp* a = input("a");
  Exp* b = input("b");
  NetCtr::Cell first = ctr.put_in_hash_tab(net.new_exp(PRE_n, {a}));
  EXPECT_EQ(first.length, 1);
  EXPECT_EQ(first.next, nullptr);
  NetCtr::Cell second = ctr.put_in_hash_tab(net.new_exp(CALL_n, {a}, 5));
  EXPECT_EQ(second.length, 2);
  EXPECT_EQ(second.next, first.node);

  NetCtr::Cell minus = ctr.put_in_hash_tab(net.new_exp(MINUS_n, {a, b}));
  NetCtr::Cell times = ctr.put_in_hash_tab(net.new_exp(TIMES_n, {a, b}));
  EXPECT_EQ(times.next, minus.node);
  EXPECT_EQ(times.length, minus.length + 1);

  Exp* c = input("c");
  NetCtr::Cell if1 = ctr.put_in_hash_tab(net.new_exp(IF_n, {a, b, c}));
  NetCtr::Cell if2 = ctr.put_in_hash_tab(net.new_exp(IF_n, {a, b, c}));
  EXPECT_EQ(if2.next, if1.node);
}

TEST_F(NetCtrTest, LongTuplesAreBucketedByTheirLastSixteenOperands) {
  std::vector<Exp*> tail;
  for (int i = 0; i < 16; ++i) tail.push_back(input(("t" + std::to_string(i)).c_str()));
  std::vector<Exp*> one;
  std::vector<Exp*> other;
  for (int i = 0; i < 4; ++i) {
    one.push_back(input(("x" + std::to_string(i)).c_str()));
    other.push_back(input(("y" + std::to_string(i)).c_str()));
  }
  one.insert(one.end(), tail.begin(), tail.end());
  other.insert(other.end(), tail.begin(), tail.end());
  NetCtr::Cell first = ctr.put_in_hash_tab(net.new_exp(TUPLE_n, one));
  NetCtr::Cell second = ctr.put_in_hash_tab(net.new_exp(NOR_n, other));
  EXPECT_EQ(second.next, first.node);
  EXPECT_EQ(second.length, first.length + 1);

  NetCtr::Cell empty1 = ctr.put_in_hash_tab(net.new_exp(DIESE_n, {}));
  NetCtr::Cell empty2 = ctr.put_in_hash_tab(net.new_exp(TUPLE_n, {}));
  EXPECT_EQ(empty2.next, empty1.node);
}

}  // namespace
