#include <algorithm>

#include "tests/net/net_fixture.h"

namespace {

using NetPrint = NetTest;

// How a parsed program prints, every operator with it, is checked through
// korvel-run (tests/reader/cases); these are the forms only the later
// stages make.
TEST_F(NetPrint, ProjectionsAndLinearForms) {
  Exp* x = input("x", net.int_type);
  Exp* y = input("y", net.int_type);
  EXPECT_EQ(def_text(net.new_proj(op(TUPLE_n, {x, y}), 2)), "proj(2)((x, y))");
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
  EXPECT_ENDS(def_text(nameless), 1,
              "Exp::print_def : 'QVREF_n' Exp must have an identifier");
  EXPECT_ENDS(def_text(net.new_blank()), 1,
              "Exp::print_def 'ERROR_n' is not implemented");
  Exp* blank = net.new_blank();
  EXPECT_ENDS(printed([&](PtyStream& out) { blank->Iprint_def(out, names, new_pass_key()); }),
              1, "Exp::Iprint_def 'ERROR_n' is not implemented");
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

  EXPECT_EQ(stdout_of([&] { print_exp(first, names); }), "not((WARNING : RECURSION )and(a))");
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
  EXPECT_ENDS(printed([&](PtyStream& s) { net.print_func_decl(id("h"), s); }), 1,
              "Net::print_func_decl : undeclared function `h`");
}

TEST_F(NetPrint, EmptyNetPrintsNothingAndANodeEndsWithTel) {
  EXPECT_EQ(printed([&](PtyStream& s) { net.print_program(s, false); }), "");
  net.set_node_name(id("n"));
  input("a", net.int_type);
  net.add_output(id("b"), net.int_type, net.true_name);
  EXPECT_EQ(printed([&](PtyStream& s) { net.print_program(s, false); }),
            "node n( a : int) returns (b : int);\nlet\ntel\n");
  EXPECT_EQ(printed([&](PtyStream& s) { net.print_program(s, true); }),
            "node n( a : int) returns (b : int);\nlet\ntel.\n");
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
