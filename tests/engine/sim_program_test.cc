#include "engine/sim_program.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/build_support.h"
#include "engine/eval_items.h"
#include "engine/input_text.h"
#include "engine/interface.h"
#include "engine/step_cycle.h"
#include "tests/common/test_io.h"

namespace {

/// A program loaded from source text, as the simulator loads a file; by
/// default it keeps its whole graph, to be looked at.
struct Loaded {
  explicit Loaded(const std::string& source, const LoadOptions& options = {.keep_items = true}) {
    ProgramFile file(source);
    program = std::make_unique<SimProgram>(file.path(), &table, options);
  }
  EvalItem* output_value(int i) { return program->output_items[i]->operands[0]; }

  SymbolTable table;
  std::unique_ptr<SimProgram> program;
};

template <class C>
bool is(const EvalItem* item) {
  return dynamic_cast<const C*>(item) != nullptr;
}

// Each class of the engine's table takes the operands the builder gives
// it (a memory's value and clock, else those of its kind), and a kind the
// operator table calls Boolean gets Boolean values whatever the type.
TEST(BuildEval, EveryItemClassFitsItsKind) {
  for (int k = 0; k < N_OPKINDS; ++k) {
    const OpKind kind = static_cast<OpKind>(k);
    const ClassByType* classes = item_classes(kind);
    if (!classes) continue;
    int count = op_operand_count(kind);
    if (count < 0) count = 3;
    if (op_eval_build(kind) == EV_MEMORY) count = 2;
    for (ItemFactory make : classes->of) {
      ItemPool pool;
      EvalItem* item = make(pool, count);
      EXPECT_EQ(item->n_operands, count) << op_name(kind);
      // The builder relies on empty slots, wherever the pool put them.
      for (int j = 0; j < count; ++j) EXPECT_EQ(item->operands[j], nullptr) << op_name(kind);
      if (op_type_rule(kind) == TY_BOOL) {
        EXPECT_EQ(item->value_kind, VK_BOOL) << op_name(kind);
      }
    }
  }
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

// Once built, the program holds its items and no operator node: the node
// lists are empty, so nothing can reach a freed node through them, and
// each output keeps the type it was declared with.
TEST(BuildEval, TheBuiltProgramKeepsNoOperatorNode) {
  Loaded l(
      "node n (a : int) returns (x : bool; y : int);\n"
      "var z : int;\n"
      "let z = a * 3; x = z > 0; y = z + 1; assert z > a; tel\n");
  SimProgram& p = *l.program;
  EXPECT_TRUE(p.output_nodes.empty());
  EXPECT_TRUE(p.local_nodes.empty());
  EXPECT_TRUE(p.assert_nodes.empty());
  EXPECT_EQ(p.record(p.input_nodes[0]), nullptr);
  EXPECT_EQ(p.output_type(0), p.net->bool_type);
  EXPECT_EQ(p.output_type(1), p.net->int_type);
  ASSERT_EQ(p.assert_items.size(), 1u);
  EXPECT_EQ(p.assert_items[0]->operands[0]->operands[0], l.output_value(1)->operands[0]);
}

// An item is made before its operands, so the path from k back to itself
// through its memory finds it; memories are listed in the order reached,
// the first-instant flag that both arrows share first. How clocked outputs
// and enumerations then run is in the korvel-run process cases.
TEST(BuildEval, MemoriesAreBuiltOnceInTheOrderReached) {
  Loaded l(
      "type colour = (green, red);\n"
      "node n (v : int) returns (c : colour; k : int);\n"
      "let c = green -> if pre c = green then red else green;\n"
      "    k = 0 -> pre k + 1; tel\n");
  SimProgram& p = *l.program;
  EvalItem* choice = p.output_items[0]->operands[0];
  EvalItem* k = p.output_items[1]->operands[0];
  ASSERT_TRUE(is<COND_int_EI>(k));
  EvalItem* last = k->operands[2]->operands[0];
  ASSERT_TRUE(is<BLAST_int_EI>(last));
  EXPECT_EQ(last->operands[0], k);
  EXPECT_EQ(k->operands[0], choice->operands[0]);
  ASSERT_EQ(p.memories.size(), 3u);
  EXPECT_TRUE(is<INIT_bool_EI>(p.memories[0]));
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
  std::string text = file_text(file);
  fclose(file);
  return text;
}

// The trace of steps, aborts, errors and resets is checked through
// korvel-run (tests/cli/cases/batch_counter, batch_faults); here, what the
// two sides are told.
TEST(StepCycle, AnAbortedStepLeavesThePanelsAndTheCountAlone) {
  Loaded l("node n (v : int) returns (x : int); let x = 0 -> pre x + v; tel\n");
  FakeInputs in;
  CountingOutputs out;
  StepCycle cycle(*l.program, in, out);
  EXPECT_TRUE(cycle.step());
  in.refusal = "Bad integer value for 'v (int)'";
  EXPECT_FALSE(cycle.step());
  EXPECT_EQ(out.updates, 1);
  EXPECT_EQ(cycle.step_number(), 1);
  in.refusal = nullptr;
  EXPECT_TRUE(cycle.step());
  EXPECT_EQ(cycle.step_number(), 2);
  cycle.reset_run();
  cycle.step();
  EXPECT_EQ(out.updates, 3);
  EXPECT_EQ(out.resets, 1);
  EXPECT_EQ(in.resets, 1);
  EXPECT_EQ(cycle.step_number(), 1);
  EXPECT_EQ(l.program->step_counter, 1u);
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

// Once the schedule stands, a program keeps only the items the front ends
// write and read; the schedule alone computes the chain.
TEST(StepCycle, LongChainStepsAndResetsWithTheFrontEndsItemsAlone) {
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
  Loaded l(source, {.minimise = false});
  EXPECT_EQ(l.program->items().size(), 2u);
  EXPECT_TRUE(l.program->memories.empty());
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

// The interface the front ends build from ------------------------------------

std::vector<std::string> texts(const std::vector<const char*>& names) {
  return {names.begin(), names.end()};
}

// Which front end shows or reads which port is their own rule, checked
// through korvel and korvel-run; here, what the rules are given.
TEST(Interface, DescribesKindsTypesAndChoicesInDeclarationOrder) {
  Loaded l(
      "type handle; type gear; const low : gear; const high : gear;\n"
      "type mode = (off, slow, fast);\n"
      "node n (b : bool; k : int; x : real; g : gear; m : mode; h : handle)\n"
      "returns (next : mode; same : handle);\n"
      "let next = if m = off then slow else fast; same = h; tel\n");
  const ProgramInterface described = describe_interface(*l.program);
  ASSERT_EQ(described.inputs.size(), 6u);
  ASSERT_EQ(described.outputs.size(), 2u);
  struct Want {
    const char* name;
    PortKind kind;
    const char* type_name;
    bool declared;
  };
  const Want want[] = {
      {"b", PortKind::kBool, "bool", false}, {"k", PortKind::kInt, "int", false},
      {"x", PortKind::kReal, "real", false}, {"g", PortKind::kNamed, "gear", true},
      {"m", PortKind::kNamed, "mode", true}, {"h", PortKind::kNamed, "handle", true},
  };
  for (size_t i = 0; i < described.inputs.size(); ++i) {
    const Port& port = described.inputs[i];
    SCOPED_TRACE(want[i].name);
    EXPECT_STREQ(port.name, want[i].name);
    EXPECT_EQ(port.kind, want[i].kind);
    EXPECT_STREQ(port.type_name, want[i].type_name);
    EXPECT_EQ(port.declared, want[i].declared);
    EXPECT_EQ(port.value, &l.program->input_items[i]->value);
  }
  using testing::ElementsAre;
  EXPECT_THAT(texts(described.inputs[3].constants), ElementsAre("low", "high"));
  // An enumeration's own names are no user constants.
  EXPECT_TRUE(described.inputs[4].constants.empty());
  EXPECT_TRUE(described.inputs[5].constants.empty());
  EXPECT_STREQ(described.outputs[0].name, "next");
  EXPECT_EQ(described.outputs[0].kind, PortKind::kNamed);
  EXPECT_EQ(described.outputs[0].value, &l.program->output_items[0]->value);
  EXPECT_STREQ(described.outputs[1].type_name, "handle");
}

// The engine compares named values as pointers: a choice taken from the
// description must be the very text its constants hold.
TEST(Interface, ChoicesAreTheTextsTheEngineCompares) {
  Loaded l(
      "type mode; const off : mode; const slow : mode; const fast : mode;\n"
      "node n (m : mode) returns (next : mode);\n"
      "let next = if m = off then slow else fast; tel\n");
  const ProgramInterface described = describe_interface(*l.program);
  const Port& m = described.inputs[0];
  const std::vector<const char*>& modes = described.outputs[0].constants;
  FakeInputs in;
  CountingOutputs out;
  StepCycle cycle(*l.program, in, out);
  ASSERT_TRUE(read_word(m, std::string("off")));
  EXPECT_EQ(m.value->s, m.constants[0]);
  cycle.step();
  EXPECT_EQ(described.outputs[0].value->s, modes[1]);
  ASSERT_TRUE(read_word(m, std::string("fast")));
  cycle.step();
  EXPECT_EQ(described.outputs[0].value->s, modes[2]);
}

}  // namespace
