#include <algorithm>

#include "tests/net/net_fixture.h"

namespace {

using NetPrint = NetTest;
using ::testing::ExitedWithCode;

TEST_F(NetPrint, OperatorForms) {
  Exp* a = input("a", net.int_type);
  Exp* b = input("b", net.int_type);
  Exp* c = input("c", net.bool_type);
  EXPECT_EQ(def_text(op(AND_n, {c, c})), "(c)and(c)");
  EXPECT_EQ(def_text(op(PRE_n, {a})), "pre(a)");
  EXPECT_EQ(def_text(op(TIMES_n, {op(PLUS_n, {a, b}), a})), "((a)+(b))*(a)");
  EXPECT_EQ(def_text(op(IF_n, {c, a, b})), " if (c) then (a) else (b)");
  EXPECT_EQ(def_text(op(DIESE_n, {c, c, c})), "#(c, c, c)");
  EXPECT_EQ(def_text(net.new_proj(op(TUPLE_n, {a, b}), 2)), "proj(2)((a, b))");
}

TEST_F(NetPrint, CallsSpreadATupleArgument) {
  Exp* a = input("a", net.int_type);
  Exp* b = input("b", net.int_type);
  EXPECT_EQ(def_text(net.new_call(id("f"), op(TUPLE_n, {a, b}))), "f(a, b)");
  EXPECT_EQ(def_text(net.new_call(id("f"), a)), "f(a)");
}

TEST_F(NetPrint, LinearForms) {
  Exp* x = input("x", net.int_type);
  Exp* y = input("y", net.int_type);
  EXPECT_EQ(def_text(net.new_icl({x, y}, {-1, 1}, 0)), "-x +y");
  EXPECT_EQ(def_text(net.new_icl({}, {}, 7)), "7");
  EXPECT_EQ(def_text(net.new_icl({x, y}, {2, -1}, 3)), "2*x -y +3");
  EXPECT_EQ(def_text(net.new_icl({x, y}, {1, -3}, -5)), "x -3*y -5");
  EXPECT_EQ(def_text(net.new_icl({x, y}, {1, INT32_MIN}, 0)), "x -2147483648*y");
  EXPECT_EQ(def_text(net.new_rcl({x, y}, {Fract(1, 2), Fract(-3, 4)}, Fract(-5, 2))),
            "1/2*x -3/4*y -5/2");
  EXPECT_EQ(def_text(net.new_rcl({x, y}, {Fract(-1), Fract(1)}, Fract(1, 3))), "-x +y +1/3");
  // A coefficient is a piece of its own, so a line may break before its "*".
  Exp* form = net.new_icl({x, y}, {2, -3}, -5);
  std::string dots(78, '.');
  EXPECT_EQ(printed([&](PtyStream& out) {
              out.print("%s", dots.c_str());
              form->print_def(out, names);
            }),
            dots + "2\n*x -3*y -5");
}

TEST_F(NetPrint, NodesThatCannotBePrintedStop) {
  Exp* nameless = net.new_leaf(QVREF_n, 0, net.int_type, net.true_name);
  EXPECT_EXIT(def_text(nameless), ExitedWithCode(1),
              "Exp::print_def : 'QVREF_n' Exp must have an identifier");
  EXPECT_EXIT(def_text(net.new_blank()), ExitedWithCode(1),
              "Exp::print_def 'ERROR_n' is not implemented");
  Exp* blank = net.new_blank();
  EXPECT_EXIT(printed([&](PtyStream& out) { blank->Iprint_def(out, names, new_pass_key()); }),
              ExitedWithCode(1), "Exp::Iprint_def 'ERROR_n' is not implemented");
}

TEST_F(NetPrint, GuardedPrintingCutsCycles) {
  Exp* a = input("a", net.bool_type);
  Exp* first = op(NOT_n, {a});
  Exp* second = op(AND_n, {first, a});
  first->operands[0] = second;
  int key = new_pass_key();
  std::string text = printed([&](PtyStream& out) { first->Iprint_def(out, names, key); });
  EXPECT_EQ(text, "not((not(WARNING : RECURSION ))and(a))");
  // The marks are cleared on the way back, so the same key prints again.
  EXPECT_EQ(second->get_mark(key), 0);
  EXPECT_EQ(first->get_mark(key), 0);

  testing::internal::CaptureStdout();
  print_exp(first, names);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "not((WARNING : RECURSION )and(a))");
}

TEST_F(NetPrint, FunctionDeclarations) {
  int in[] = {id("a"), id("int"), id("b"), id("real")};
  int out[] = {id("y"), id("real")};
  net.add_usr_proc(id("f"), nullptr, net.real_type, new IndexList(in, 4), new IndexList(out, 2));
  net.add_usr_proc(id("g"), nullptr, net.real_type, nullptr, new IndexList(out, 2));
  EXPECT_EQ(printed([&](PtyStream& s) { net.print_func_decl(id("f"), s); }),
            "\nfunction f (a : int; b : real)\nreturns (y : real);");
  EXPECT_EQ(printed([&](PtyStream& s) { net.print_func_decl(id("g"), s); }),
            "\nfunction g ()\nreturns (y : real);");
  EXPECT_EXIT(printed([&](PtyStream& s) { net.print_func_decl(id("h"), s); }), ExitedWithCode(1),
              "Net::print_func_decl : undeclared function `h`");
}

TEST_F(NetPrint, WholeProgram) {
  int rgb[] = {id("red"), id("green")};
  net.declare_type(id("handle"));
  net.declare_enum_type(id("color"), new IndexList(rgb, 2));
  net.add_usr_const(id("k"), net.int_type, net.true_name);
  net.add_usr_const(id("m"), net.int_type, net.true_name);
  net.add_usr_const(id("h"), named("handle"), id("k"));
  int in[] = {id("x"), id("int")};
  int out[] = {id("p"), id("int"), id("q"), id("real")};
  int pair[] = {id("int"), id("real")};
  net.add_usr_proc(id("split"), net.int_type, net.tuple_type(pair, 2), new IndexList(in, 2),
                   new IndexList(out, 4));

  net.set_node_name(id("main"));
  Exp* a = input("a", net.int_type);
  Exp* b = input("b", net.int_type);
  net.add_input(id("c"), net.bool_type, id("a"));
  net.add_output(id("o"), net.int_type, net.true_name);
  net.add_output(id("col"), named("color"), net.true_name);
  net.add_local(id("p"), net.int_type, net.true_name);
  net.add_local(id("q"), net.real_type, net.true_name);
  net.add_assert(op(GT_n, {a, net.int_literal(id("0"))}));
  net.define(id("o"), op(PLUS_n, {a, net.ident_info(id("p"))->ref}));
  net.define(id("col"), net.ident_info(id("red"))->ref);
  int pq[] = {id("p"), id("q")};
  net.define_tuple(new IndexList(pq, 2), net.new_call(id("split"), b));

  EXPECT_EQ(printed([&](PtyStream& s) { net.print_program(s, true); }),
            "type handle, color = (red, green);\n"
            "const\n"
            "   k, m : int;\n"
            "   (h : handle) when k;\n"
            "\n"
            "function split (x : int)\n"
            "returns (p : int; q : real);\n"
            "\n"
            "node main( a, b : int; (c : bool) when a) returns (o : int; col : color);\n"
            "var\n"
            "   p : int;\n"
            "   q : real;\n"
            "let\n"
            "   assert (a)>(0);\n"
            "   o = (a)+(p);\n"
            "   col = red;\n"
            "   (p, q) = split(b);\n"
            "tel.\n");
}

TEST_F(NetPrint, EmptyNetPrintsNothingAndANodeEndsWithTel) {
  EXPECT_EQ(printed([&](PtyStream& s) { net.print_program(s, false); }), "");
  net.set_node_name(id("n"));
  input("a", net.int_type);
  net.add_output(id("b"), net.int_type, net.true_name);
  EXPECT_EQ(printed([&](PtyStream& s) { net.print_program(s, false); }),
            "node n( a : int) returns (b : int);\nlet\ntel\n");
}

TEST_F(NetPrint, DeepChainsPrintWithoutExhaustingTheStack) {
  Exp* a = input("a", net.int_type);
  const int depth = 300000;
  Exp* sum = a;
  for (int i = 0; i < depth; ++i) sum = op(PLUS_n, {sum, a});
  std::string text = def_text(sum);
  text.erase(std::remove(text.begin(), text.end(), '\n'), text.end());
  std::string want = std::string(depth, '(') + "a";
  for (int i = 0; i < depth; ++i) want += ")+(a)";
  EXPECT_EQ(text, want);
}

}  // namespace
