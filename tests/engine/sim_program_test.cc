#include "engine/sim_program.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <string>

#include "engine/eval_items.h"
#include "engine/step_cycle.h"

namespace {

/// A program loaded from source text, as the simulator loads a file.
struct Loaded {
  explicit Loaded(const std::string& source, int skip_minimise = 0) {
    static int serial = 0;
    const std::string path = testing::TempDir() + "engine_test_" + std::to_string(++serial) + ".qv";
    std::ofstream(path) << source;
    program = std::make_unique<SimProgram>(path.c_str(), &table, skip_minimise);
    std::remove(path.c_str());
  }
  EvalItem* output_value(int i) { return program->output_items[i]->operands[0]; }

  SymbolTable table;
  std::unique_ptr<SimProgram> program;
};

/// Loads in a child process, for the programs that must be refused.
void load_only(const std::string& source) {
  Loaded loaded(source);
}

template <class C>
bool is(const EvalItem* item) {
  return dynamic_cast<const C*>(item) != nullptr;
}

TEST(BuildEval, ClassesFollowOperatorAndType) {
  Loaded l(
      "node n (a, b : bool; i, j : int; x, y : real)\n"
      "returns (o1 : bool; o2 : int; o3 : bool; o4 : int; o5 : real; o6 : int);\n"
      "let\n"
      "  o1 = a xor b; o2 = i / j; o3 = x < y; o4 = i mod j; o5 = x / y; o6 = -i;\n"
      "tel\n");
  EXPECT_TRUE(is<NE_bool_EI>(l.output_value(0)));
  EXPECT_TRUE(is<DIV_int_EI>(l.output_value(1)));
  EXPECT_TRUE(is<LT_double_EI>(l.output_value(2)));
  EXPECT_TRUE(is<MOD_int_EI>(l.output_value(3)));
  EXPECT_TRUE(is<DIV_double_EI>(l.output_value(4)));
  EXPECT_TRUE(is<UMINUS_int_EI>(l.output_value(5)));
  EXPECT_TRUE(is<OUTPUT_bool_EI>(l.program->output_items[0]));
  EXPECT_TRUE(is<OUTPUT_double_EI>(l.program->output_items[4]));
  EXPECT_TRUE(is<INPUT_double_EI>(l.program->input_items[4]));
  EXPECT_EQ(static_cast<INPUT_int_EI*>(l.program->input_items[2])->identifier, l.table.find("i"));
  // An unclocked output reads the constant true as its clock.
  EvalItem* clock = l.program->output_items[0]->operands[1];
  ASSERT_TRUE(is<CONST_bool_EI>(clock));
  EXPECT_EQ(clock->value.i, 1);
}

TEST(BuildEval, SharedNodesShareOneItem) {
  Loaded l(
      "node n (a, b : int) returns (x, y : int);\n"
      "let x = a + b; y = (a + b) * 2 + x; tel\n");
  EvalItem* sum = l.output_value(0);
  EvalItem* times = l.output_value(1)->operands[0];
  EXPECT_EQ(times->operands[0], sum);
  EXPECT_EQ(l.output_value(1)->operands[1], sum);
  EXPECT_EQ(sum->operands[0], l.program->input_items[0]);
}

TEST(BuildEval, ClockedOutputsAndMemories) {
  Loaded l(
      "type colour = (green, red);\n"
      "node n (tick : bool; v : int) returns ((w : int) when tick; c : colour; k : int);\n"
      "let w = v when tick; c = green -> if pre c = green then red else green;\n"
      "    k = 0 -> pre k + 1; tel\n");
  SimProgram& p = *l.program;
  // w = if tick then v else bottom: the value is v, the clock tick.
  EXPECT_EQ(p.output_items[0]->operands[0], p.input_items[1]);
  EXPECT_EQ(p.output_items[0]->operands[1], p.input_items[0]);
  EXPECT_TRUE(is<OUTPUT_extern_EI>(p.output_items[1]));
  EXPECT_EQ(p.output_items[1]->extern_type_name(), l.table.find("colour"));
  EvalItem* choice = p.output_items[1]->operands[0];
  ASSERT_TRUE(is<COND_extern_EI>(choice));
  EXPECT_EQ(choice->extern_type_name(), l.table.find("colour"));
  // k refers to itself through its memory, which is built once.
  EvalItem* k = p.output_items[2]->operands[0];
  ASSERT_TRUE(is<COND_int_EI>(k));
  EvalItem* last = k->operands[2]->operands[0];
  ASSERT_TRUE(is<BLAST_int_EI>(last));
  EXPECT_EQ(last->operands[0], k);
  // Both arrows share the first-instant flag; two memories, one flag.
  EXPECT_EQ(k->operands[0], choice->operands[0]);
  ASSERT_EQ(p.memories.size(), 3u);
  EXPECT_TRUE(is<INIT_bool_EI>(p.memories[0]));
}

TEST(BuildEval, LibraryCalls) {
  Loaded l(
      "function sqrt (x : real) returns (y : real);\n"
      "function pow (x : real; n : real) returns (y : real).\n"
      "node n (x : real; i : int) returns (r : real; k : int; s : real);\n"
      "let r = pow(x, 3.0); k = int x; s = sqrt(real i); tel\n");
  EvalItem* power = l.output_value(0);
  ASSERT_TRUE(is<BFUNC_double_EI>(power));
  EXPECT_EQ(power->operands[0], l.program->input_items[0]);
  EXPECT_TRUE(is<CONST_double_EI>(power->operands[1]));
  EXPECT_TRUE(is<REAL2INT_int_EI>(l.output_value(1)));
  EXPECT_TRUE(is<UFUNC_double_EI>(l.output_value(2)));
  EXPECT_TRUE(is<INT2REAL_double_EI>(l.output_value(2)->operands[0]));
}

TEST(BuildEvalDeathTest, RefusedPrograms) {
  EXPECT_EXIT(load_only("function pow (x : real) returns (y : real).\n"
                        "node n (x : real) returns (y : real); let y = pow(x); tel\n"),
              testing::ExitedWithCode(1), "^Unsupported function :\n");
  EXPECT_EXIT(load_only("function f (x : real; y : real) returns (y : real).\n"
                        "node n (x : real) returns (y : real); let y = f(x, x); tel\n"),
              testing::ExitedWithCode(1), "^Unsupported function :\n");
  EXPECT_EXIT(load_only("node n (x : int) returns (y : int); let y = x; assert x + 1; tel\n"),
              testing::ExitedWithCode(1), "^Assertions must be boolean expressions$");
}

// Nothing checks types before the graph is built; items that would read
// an operand of another kind are refused instead of computing garbage.
TEST(BuildEvalDeathTest, IllTypedOperandsRefused) {
  EXPECT_EXIT(load_only("node n (x, y : real) returns (m : real); let m = x mod y; tel\n"),
              testing::ExitedWithCode(1),
              "^Type mismatch: real operand of 'mod' where int is expected\n$");
  EXPECT_EXIT(load_only("node n (c : bool) returns (v : int); let v = if c then 1 else 2.0; tel\n"),
              testing::ExitedWithCode(1),
              "^Type mismatch: real operand of 'if' where int is expected\n$");
  EXPECT_EXIT(load_only("type a = (p, q); type b = (r, s);\n"
                        "node n (x : a; y : b) returns (e : bool); let e = x = y; tel\n"),
              testing::ExitedWithCode(1),
              "^Type mismatch: a operand of '=' where b is expected\n$");
  EXPECT_EXIT(load_only("node n (c : int; v : int) returns ((w : int) when c);\n"
                        "let w = v when c; tel\n"),
              testing::ExitedWithCode(1),
              "^Type mismatch: int operand of output 'w' where bool is expected\n$");
}

// The step cycle ------------------------------------------------------------------

/// Inputs set by the test; a non-null `refusal` refuses the step.
struct FakeInputs : StepInputs {
  const char* check() override { return refusal; }
  void reset() override { ++resets; }
  const char* refusal = nullptr;
  int resets = 0;
};

struct CountingOutputs : StepOutputs {
  void update() override { ++updates; }
  void reset() override { ++resets; }
  int updates = 0;
  int resets = 0;
};

/// Runs `steps` with the trace in a temporary file and returns the trace.
template <class Steps>
std::string traced(Steps steps) {
  FILE* file = tmpfile();
  set_trace_stream(file);
  steps();
  set_trace_stream(nullptr);
  std::string text;
  rewind(file);
  for (int c; (c = fgetc(file)) != EOF;) text += static_cast<char>(c);
  fclose(file);
  return text;
}

TEST(StepCycle, TraceOfStepsErrorsAbortsAndReset) {
  Loaded l(
      "node counter (b : bool; n : int) returns (x : int; d : int);\n"
      "let x = 0 -> pre x + n; d = 10 div (n - 4); assert b; tel\n");
  FakeInputs in;
  CountingOutputs out;
  StepCycle cycle(*l.program, in, out);
  EvalItem* b = l.program->input_items[0];
  EvalItem* n = l.program->input_items[1];
  const std::string trace = traced([&] {
    cycle.trace_header();
    b->value.i = 1;
    n->value.i = 3;
    cycle.step();
    in.refusal = "Bad integer value for 'n (int)'";
    EXPECT_FALSE(cycle.step());
    in.refusal = nullptr;
    b->value.i = 0;
    n->value.i = 4;
    EXPECT_TRUE(cycle.step());
    cycle.reset_run();
    b->value.i = 1;
    n->value.i = 5;
    cycle.step();
  });
  EXPECT_EQ(trace,
            "#program counter\n"
            "#(b, n) returns (x, d)\n"
            "#step 1\n"
            "t  3  #0  -10  \n"
            "#error msg from inputs manager\n"
            "#Bad integer value for 'n (int)'\n"
            "#aborted\n"
            "#step 2\n"
            "f  4  #error : Assertion takes on false\n"
            "#4  -10  \n"
            "#reset\n"
            "#step 1\n"
            "t  5  #0  10  \n");
  EXPECT_EQ(out.updates, 3);
  EXPECT_EQ(out.resets, 1);
  EXPECT_EQ(in.resets, 1);
  EXPECT_EQ(cycle.step_number(), 1);
  EXPECT_EQ(l.program->step_counter, 1u);
}

TEST(StepCycle, NilOutputReportedOnce) {
  Loaded l("node quiet (a : bool) returns (y : int); let y = pre 1; tel\n");
  FakeInputs in;
  CountingOutputs out;
  StepCycle cycle(*l.program, in, out);
  const std::string trace = traced([&] {
    cycle.trace_header();
    cycle.step();
    cycle.step();
  });
  EXPECT_EQ(trace,
            "#program quiet\n"
            "#(a) returns (y)\n"
            "#step 1\n"
            "f  #error Output \"y\" takes on nil\n"
            "#0  \n"
            "#step 2\n"
            "f  #1  \n");
}

TEST(StepCycle, EmptyNameListsInTheInterfaceLine) {
  // The grammar asks for one input and one output at least, but the line
  // must not depend on it.
  Loaded l("node n (a : bool) returns (y : bool); let y = a; tel\n");
  l.program->input_names.clear();
  FakeInputs in;
  CountingOutputs out;
  StepCycle cycle(*l.program, in, out);
  EXPECT_EQ(traced([&] { cycle.trace_header(); }), "#program n\n#() returns (y)\n");
  l.program->output_names.clear();
  EXPECT_EQ(traced([&] { cycle.trace_header(); }), "#program n\n#() returns ()\n");
}

TEST(StepCycle, LongChainStepsAndResets) {
  // A long chain of equations, each one the previous plus one.
  constexpr int kLength = 20000;
  std::string source = "node chain (a : int) returns (y : int);\nvar ";
  for (int i = 1; i < kLength; ++i)
    source += "x" + std::to_string(i) + (i + 1 < kLength ? ", " : " : int;\nlet\n");
  source += "  x1 = a + 1;\n";
  for (int i = 2; i < kLength; ++i) {
    source += "  x" + std::to_string(i) + " = x" + std::to_string(i - 1) + " + 1;\n";
  }
  source += "  y = x" + std::to_string(kLength - 1) + ";\ntel\n";
  Loaded l(source, 1);
  FakeInputs in;
  CountingOutputs out;
  StepCycle cycle(*l.program, in, out);
  l.program->input_items[0]->value.i = 5;
  cycle.step();
  EXPECT_EQ(l.program->output_items[0]->value.i, 5 + kLength - 1);
  cycle.reset_run();
  l.program->input_items[0]->value.i = 7;
  cycle.step();
  EXPECT_EQ(l.program->output_items[0]->value.i, 7 + kLength - 1);
}

}  // namespace
