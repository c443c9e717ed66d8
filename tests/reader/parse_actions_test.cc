#include "reader/parse_actions.h"

#include <gtest/gtest.h>

#include "net/net.h"

namespace {

TEST(ParseActions, ConversionsAreDeclaredOncePerProcessInSourceOrder) {
  reset_conversions();
  SymbolTable names;
  Net net(&names);
  net.add_input(names.intern("i"), net.int_type, net.true_name);
  Exp* i = net.ident_info(names.intern("i"))->ref;

  Exp* call = convert(&net, TO_REAL, i);
  EXPECT_EQ(call->op, CALL_n);
  EXPECT_EQ(call->function_name(), names.find("int2real"));
  // As "function int2real (x : int) returns (y : real)" would intern them.
  EXPECT_EQ(names.find("x"), names.find("int2real") + 1);
  EXPECT_EQ(names.find("y"), names.find("x") + 1);
  FuncInfo* f = net.func_info(names.find("int2real"));
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(f->in_type, net.int_type);
  EXPECT_EQ(f->out_type, net.real_type);

  convert(&net, TO_INT, convert(&net, TO_REAL, i));
  EXPECT_EQ(net.n_usr_procs, 2);
  // A second net of the same process gets calls but no declarations.
  Net other(&names);
  convert(&other, TO_REAL, i);
  EXPECT_EQ(other.n_usr_procs, 0);
  reset_conversions();
}

}  // namespace
