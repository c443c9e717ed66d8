// The schedule against the items it is taken from: random programs, each
// loaded twice and run side by side, one through its schedule and one by
// walking its items on demand, with the same inputs and resets. Every
// assertion and output must agree at every step (value, status, absence),
// so must the way and the point at which a run ends, and so must the whole
// trace.
#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <set>
#include <string>

#include "engine/eval_items.h"
#include "engine/sim_program.h"
#include "engine/step_cycle.h"
#include "reader/lexer.h"
#include "reader/parse_actions.h"
#include "tests/common/test_io.h"
#include "tests/engine/random_program.h"

namespace {

struct SetInputs : StepInputs {
  const char* check() override { return nullptr; }
  void reset() override {}
};

struct NoOutputs : StepOutputs {
  void update() override {}
  void reset() override {}
};

/// The values of one step for the inputs c, d, i, j, x, y, k, g.
struct StepValues {
  bool c, d;
  int32_t i, j;
  double x, y;
  const char* k;
  const char* g;
};

StepValues random_values(std::mt19937& rng) {
  const int32_t ints[] = {0, 1, -1, 2, 7, -7, INT32_MIN, INT32_MAX};
  const double reals[] = {0.0, -0.0, 1.5, -2.25, 3.0, NAN, INFINITY, 1e300};
  const char* const colors[] = {"red", "green", "blue"};
  const char* const gears[] = {"low", "high"};
  auto any = [&](const auto& xs) { return xs[rng() % std::size(xs)]; };
  return {rng() % 2 == 0, rng() % 3 != 0, any(ints),   any(ints),
          any(reals),     any(reals),     any(colors), any(gears)};
}

/// A program run one way, its trace kept in a file of its own. Run by
/// the schedule, it keeps no more items than a front end does.
class OneRun {
 public:
  OneRun(const ProgramFile& file, bool by_items) {
    reset_diagnostics();
    reset_conversions();
    reset_characters_read();
    LoadOptions options;
    options.keep_items = by_items;
    load = ending_of(
        [&] { program = std::make_unique<SimProgram>(file.path(), &table, options); });
    if (!program) return;
    if (by_items) program->step_by_items();
    cycle = std::make_unique<StepCycle>(*program, inputs, outputs);
    trace = tmpfile();
    traced([&] { cycle->trace_header(); });
  }
  OneRun(const OneRun&) = delete;
  OneRun& operator=(const OneRun&) = delete;
  ~OneRun() {
    if (trace) fclose(trace);
  }

  void set(const StepValues& v) {
    std::vector<EvalItem*>& in = program->input_items;
    in[0]->value.i = v.c;
    in[1]->value.i = v.d;
    in[2]->value.i = v.i;
    in[3]->value.i = v.j;
    in[4]->value.d = v.x;
    in[5]->value.d = v.y;
    in[6]->value.s = name(v.k);
    in[7]->value.s = name(v.g);
  }

  /// Steps or resets; false once the run has ended the process.
  bool act(bool reset) {
    if (end.status != -1) return false;
    end = ending_of([&] { traced([&] { reset ? cycle->reset_run() : (void)cycle->step(); }); });
    return end.status == -1;
  }

  /// Value, status and absence of every assertion and output.
  std::string snapshot() const {
    std::string text;
    for (const auto* items : {&program->assert_items, &program->output_items}) {
      for (EvalItem* item : *items) {
        // A real by its bits, which "%lf" would not all show.
        char buffer[kValueTextSize];
        text += item->value_kind == VK_REAL ? std::to_string(std::bit_cast<uint64_t>(item->value.d))
                                            : value_text(*item, buffer);
        text += "/" + std::to_string(item->status) + "/" + std::to_string(item->is_bottom()) + " ";
      }
    }
    return text;
  }

  std::string trace_text() const { return file_text(trace); }

  SymbolTable table;
  std::unique_ptr<SimProgram> program;
  Ending load;
  Ending end;

 private:
  const char* name(const char* text) { return table.text(table.find("%s", text)); }
  template <class Action>
  void traced(Action action) {
    set_trace_stream(trace);
    action();
    set_trace_stream(nullptr);
  }

  SetInputs inputs;
  NoOutputs outputs;
  std::unique_ptr<StepCycle> cycle;
  FILE* trace = nullptr;
};

/// What the runs went through, so that the comparison is known to have
/// met each case.
struct Seen {
  std::set<int> ops;
  int loaded = 0, nil = 0, div_zero = 0, absent = 0, clock_nil = 0, resets = 0;
  /// The ways a memory takes its next state.
  int copied = 0, clocked = 0, low_half = 0, first = 0, read_from_operand = 0;
  /// Programs with an `->` that takes no instruction after the first step.
  int elided = 0;

  /// The schedule's own operations met in the code.
  std::set<int> code_ops;

  void note(const SimProgram& p, const StepCode& code) {
    for (const StepInstr& in : code.code) code_ops.insert(in.op);
    read_from_operand += p.memories.size() >
                         code.copies.size() + code.clocked.size() + code.firsts.size();
    copied += !code.copies.empty();
    for (const NextState& m : code.clocked) (m.low_half ? low_half : clocked)++;
    first += !code.firsts.empty();
    elided += !code.first_step.empty();
  }

  void note(const SimProgram& p) {
    for (const auto& item : p.items()) ops.insert(item->step_op());
    for (EvalItem* out : p.output_items) {
      if (out->is_bottom()) {
        ++absent;
      } else {
        nil += (out->status & ST_NIL) != 0;
        div_zero += (out->status & ST_DIV_ZERO) != 0;
      }
    }
  }
};

// Agreeing is not enough: a knot computed in demand order, v1 reading the
// v0 of the step before, since v0 is still being ensured when v1 needs it.
TEST(ScheduleOracle, InstantaneousCycleReadsThePreviousValueBothWays) {
  ProgramFile file(
      "node n (c : bool) returns (o : int); var v0, v1 : int;\n"
      "let v0 = 0 -> v1 + 1; v1 = v0 * 2; o = v0 + v1; tel\n");
  for (bool by_items : {false, true}) {
    OneRun run(file, by_items);
    std::string outputs;
    for (int step = 0; step < 4; ++step) {
      ASSERT_TRUE(run.act(false));
      const EvalItem& o = *run.program->output_items[0];
      outputs += (o.status ? "nil" : std::to_string(o.value.i)) + " ";
    }
    EXPECT_EQ(outputs, "nil 1 5 13 ") << by_items;
  }
}

// A memory of a memory takes the state the inner one had during the step,
// whichever of the two takes its next state first: the shared `pre w` is
// completed before or after `pre (pre w)` by the order of the equations.
TEST(ScheduleOracle, MemoryOfMemoryTakesTheStateOfTheStep) {
  for (const char* equations : {"y = pre w; z = pre (pre w);", "z = pre (pre w); y = pre w;"}) {
    ProgramFile file(std::string("node n (c : bool) returns (y, z : int); var w : int;\nlet ") +
                     equations + " w = 0 -> z + 1; tel\n");
    for (bool by_items : {false, true}) {
      OneRun run(file, by_items);
      std::string outputs;
      for (int step = 0; step < 6; ++step) {
        ASSERT_TRUE(run.act(false));
        for (const EvalItem* o : run.program->output_items) {
          outputs += (o->status ? "nil" : std::to_string(o->value.i)) + " ";
        }
        outputs += "| ";
      }
      EXPECT_EQ(outputs, "nil nil | 0 nil | nil 0 | 1 nil | nil 1 | 2 nil | ")
          << equations << by_items;
    }
  }
}

// `pre n` can be read from n's own slot only while n is not yet computed
// in the step. Here the comparison is made by its `if`, after the else
// branch has computed n.
TEST(ScheduleOracle, MemoryReadAfterItsOperandIsComputedKeepsItsState) {
  ProgramFile file(
      "node n (c : bool) returns (y : int); var n : int;\n"
      "let n = 0 -> pre n + 1; y = if pre n < 2 then 5 else n; tel\n");
  for (bool by_items : {false, true}) {
    OneRun run(file, by_items);
    std::string outputs;
    for (int step = 0; step < 5; ++step) {
      ASSERT_TRUE(run.act(false));
      const EvalItem& y = *run.program->output_items[0];
      outputs += (y.status ? "nil" : std::to_string(y.value.i)) + " ";
    }
    EXPECT_EQ(outputs, "nil 5 5 3 4 ") << by_items;
  }
}

/// The outputs after each action of `actions` ('s' a step, 'r' a reset),
/// nil or the int value, separated by spaces, each step ended by "|".
std::string int_outputs(const ProgramFile& file, bool by_items, const char* actions) {
  OneRun run(file, by_items);
  std::string text;
  for (const char* a = actions; *a; ++a) {
    if (!run.act(*a == 'r')) return text + "ended";
    if (*a == 'r') continue;
    for (const EvalItem* o : run.program->output_items) {
      text += (o->status ? "nil" : std::to_string(o->value.i)) + " ";
    }
    text += "| ";
  }
  return text;
}

// An `->` on the base clock shares its right operand's slot, which holds
// its left operand at the first step after the build and after each reset,
// wherever the reset falls; `pre x` is read from that slot.
TEST(ScheduleOracle, ArrowTakesItsLeftOperandAtEachFirstStep) {
  ProgramFile file(
      "node n (c : bool) returns (x, y : int);\n"
      "let x = 5 -> pre x + 1; y = 0 -> pre x - 1; tel\n");
  for (bool by_items : {false, true}) {
    EXPECT_EQ(int_outputs(file, by_items, "rsssrsrrss"),
              "5 0 | 6 4 | 7 5 | 5 0 | 5 0 | 6 4 | ")
        << by_items;
  }
  OneRun kept(file, true);
  const StepCode code = derive_step_code(*kept.program);
  std::multiset<int> first, later;
  for (uint32_t k = 0; k + 1 < code.code.size(); ++k) first.insert(code.code[k].op);
  std::vector<StepInstr> after = code.code;
  for (const FirstStepInstr& x : code.first_step) after[x.position] = x.held;
  for (uint32_t k = 0; k + 1 < after.size(); ++k) later.insert(after[k].op);
  // Neither `->` takes an instruction; the right operands copy the left
  // ones at the first step. The flag they share checks its clock.
  EXPECT_EQ(first, (std::multiset<int>{OP_STATE, OP_STATE, OP_CHECK_CLOCK}));
  EXPECT_EQ(later, (std::multiset<int>{OP_ADD_IK, OP_ADD_IK, OP_CHECK_CLOCK}));
}

// The code of every root runs before the first is sampled: a memory an
// output reads is not read from its operand's slot when that operand is
// computed for a later output.
TEST(ScheduleOracle, MemoryReadByAnOutputKeepsItsStateWhenALaterOutputComputesItsOperand) {
  ProgramFile file(
      "node n (c : bool) returns (y, z : int); var w : int;\n"
      "let y = pre w; w = 0 -> pre w + 1; z = w; tel\n");
  for (bool by_items : {false, true}) {
    EXPECT_EQ(int_outputs(file, by_items, "sssrs"), "nil 0 | 0 1 | 1 2 | nil 0 | ") << by_items;
  }
}

/// Runs `source` both ways with inputs and resets drawn from `seed`,
/// noting what the runs met.
void run_alike(const std::string& source, unsigned seed, Seen& seen) {
  constexpr int kSteps = 14;
  SCOPED_TRACE(source);
  ProgramFile file(source);
  OneRun scheduled(file, false);
  OneRun walked(file, true);
  ASSERT_EQ(scheduled.load.status, walked.load.status);
  if (!scheduled.program) return;
  ++seen.loaded;
  seen.note(*walked.program, derive_step_code(*walked.program));
  std::mt19937 rng(seed);
  for (int step = 0; step < kSteps; ++step) {
    const bool reset = rng() % 6 == 0;
    seen.resets += reset;
    const StepValues values = random_values(rng);
    scheduled.set(values);
    walked.set(values);
    const bool going = scheduled.act(reset);
    ASSERT_EQ(going, walked.act(reset)) << "at step " << step;
    if (!going) {
      ASSERT_EQ(scheduled.end.status, walked.end.status);
      ASSERT_EQ(scheduled.end.err, walked.end.err);
      seen.clock_nil += scheduled.end.err == "clock takes on nil\n";
      break;
    }
    ASSERT_EQ(scheduled.snapshot(), walked.snapshot()) << "at step " << step;
    seen.note(*walked.program);
  }
  ASSERT_EQ(scheduled.trace_text(), walked.trace_text());
}

// Comparisons of every kind against constants, made by their `if`s and on
// their own, which random programs meet too seldom to be sure of each.
const char* const kConstantComparisons =
    "type color = (red, green, blue);\n"
    "type gear; const low : gear; const high : gear;\n"
    "node n (c, d : bool; i, j : int; x, y : real; k : color; g : gear)\n"
    "returns (a : int; b : real; e : bool);\n"
    "let\n"
    "  a = (if i = 7 then j else 1) + (if i <> 1 then j else 2) + (if i < 0 then j else 3)\n"
    "    + (if i <= 2 then j else i) + (if i > -1 then j - 7 else 5) + (if i >= 3 then j else 6);\n"
    "  b = if x = y then x else if x <> 1.5 then y else 0.0;\n"
    "  e = (j = 7) or (j <> 1) and (j < 0) or (j <= 2) and (j > 7) or (j >= 3);\n"
    "tel\n";

// Names read as truth values by counting operators with many operands:
// each read takes a zero instruction of its own, which must read the name
// it stands for however far down the list that is. A zero instruction
// reading another operand would still give zero, so its operand is
// checked in the code itself.
TEST(ScheduleOracle, LateOperandsReadAsZeroReadTheirOwnName) {
  ProgramFile file(
      "type color = (red, green, blue);\n"
      "type gear; const low : gear; const high : gear;\n"
      "node n (c, d : bool; i, j : int; x, y : real; k : color; g : gear)\n"
      "returns (a, b : bool);\n"
      "let\n"
      "  a = #(c, d, not c, d, k, not d, g);\n"
      "  b = nor(d, c and d, g, c, d, k, c or d);\n"
      "tel\n");
  // Walked by the items, which the derivation reads.
  OneRun run(file, true);
  ASSERT_TRUE(run.program);
  const StepCode code = derive_step_code(*run.program);
  std::set<uint32_t> names;
  for (const auto& [item, slot] : code.inputs) {
    if (item->value_kind == VK_EXTERN) names.insert(slot);
  }
  ASSERT_EQ(names.size(), 2u);
  int zeros = 0;
  for (const StepInstr& in : code.code) {
    if (in.op != OP_ZERO) continue;
    ++zeros;
    EXPECT_TRUE(names.count(in.a)) << "a zero instruction reads slot " << in.a;
  }
  EXPECT_EQ(zeros, 4);
}

TEST(ScheduleOracle, RandomProgramsRunAlikeBothWays) {
  constexpr unsigned kPrograms = 400;
  Seen seen;
  for (unsigned seed = 1; seed <= kPrograms; ++seed) {
    run_alike(random_program(seed), seed, seen);
    if (HasFatalFailure()) return;
  }
  for (unsigned seed = 1; seed <= 10; ++seed) {
    run_alike(kConstantComparisons, seed, seen);
    if (HasFatalFailure()) return;
  }
  // The programs met every operation and every way a value can be missing.
  for (int op = OP_CONST; op <= OP_COND_N; ++op) EXPECT_TRUE(seen.ops.count(op)) << "op " << op;
  EXPECT_GT(seen.loaded, static_cast<int>(kPrograms) * 3 / 4);
  EXPECT_GT(seen.nil, 0);
  EXPECT_GT(seen.div_zero, 0);
  EXPECT_GT(seen.absent, 0);
  EXPECT_GT(seen.clock_nil, 0);
  EXPECT_GT(seen.resets, 0);
  EXPECT_GT(seen.copied, 0);
  EXPECT_GT(seen.clocked, 0);
  EXPECT_GT(seen.low_half, 0);
  EXPECT_GT(seen.first, 0);
  EXPECT_GT(seen.elided, static_cast<int>(kPrograms) / 10);
  for (int op = OP_ZERO; op < OP_END; ++op) {
    // A memory read by another one's next state has tests of its own.
    if (op != OP_STATE) {
      EXPECT_TRUE(seen.code_ops.count(op)) << "instruction " << op;
    }
  }
  EXPECT_GT(seen.read_from_operand, static_cast<int>(kPrograms) / 10);
}

}  // namespace
