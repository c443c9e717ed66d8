#include "history/run_history.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "engine/step_cycle.h"
#include "tests/common/test_io.h"

namespace {

// go drives a clock; q divides by d; p is nil at the first instant.
const char* const kProgram =
    "node h (go : bool; n, d : int)\n"
    "returns (q : int; (c : int) when go; p : bool);\n"
    "let\n"
    "  q = n div d;\n"
    "  c = n when go;\n"
    "  p = pre go;\n"
    "tel\n";

/// Inputs set by the test; `refuse` aborts the next step.
struct SetInputs : StepInputs {
  explicit SetInputs(SimProgram& p) : program(p) {}
  const char* check() override {
    if (refuse) return "refused";
    for (size_t i = 0; i < values.size(); ++i) {
      program.input_items[i]->value.i = values[i];
      program.input_items[i]->status = 0;
    }
    return nullptr;
  }
  void reset() override {}
  SimProgram& program;
  std::vector<int> values;
  bool refuse = false;
};

struct NoOutputs : StepOutputs {
  void update() override {}
  void reset() override {}
};

struct Recorded {
  explicit Recorded(size_t window) {
    ProgramFile file(kProgram);
    program = std::make_unique<SimProgram>(file.path(), &table);
    inputs = std::make_unique<SetInputs>(*program);
    cycle = std::make_unique<StepCycle>(*program, *inputs, outputs);
    history = std::make_unique<RunHistory>(*program, window);
    cycle->observe(history.get());
  }
  void step(std::vector<int> values) {
    inputs->values = std::move(values);
    cycle->step();
  }
  SampleState state(size_t t, size_t signal) const { return history->samples(t)[signal].state; }
  int value(size_t t, size_t signal) const { return history->samples(t)[signal].value.i; }

  SymbolTable table;
  std::unique_ptr<SimProgram> program;
  std::unique_ptr<SetInputs> inputs;
  NoOutputs outputs;
  std::unique_ptr<StepCycle> cycle;
  std::unique_ptr<RunHistory> history;
};

// Signals: go n d (inputs), q c p (outputs).
enum { kGo, kN, kD, kQ, kC, kP };

TEST(RunHistory, RecordsEveryStateOfEverySignal) {
  Recorded run(16);
  ASSERT_EQ(run.history->signals().size(), 6u);
  EXPECT_STREQ(run.history->signals()[kQ].port->name, "q");
  EXPECT_TRUE(run.history->signals()[kQ].output);
  EXPECT_FALSE(run.history->signals()[kD].output);
  run.step({1, 7, 2});
  run.step({0, 9, 0});
  ASSERT_EQ(run.history->end(), 2u);
  EXPECT_EQ(run.value(0, kN), 7);
  EXPECT_EQ(run.state(0, kQ), SampleState::kDefined);
  EXPECT_EQ(run.value(0, kQ), 3);
  EXPECT_EQ(run.state(0, kC), SampleState::kDefined);
  EXPECT_EQ(run.value(0, kC), 7);
  EXPECT_EQ(run.state(0, kP), SampleState::kNil);
  EXPECT_EQ(run.state(1, kQ), SampleState::kDivZero);
  EXPECT_EQ(run.state(1, kC), SampleState::kAbsent);
  EXPECT_EQ(run.state(1, kP), SampleState::kDefined);
  EXPECT_EQ(run.value(1, kP), 1);
  EXPECT_EQ(run.history->tick(1).step, 2);
}

TEST(RunHistory, KeepsOnlyItsWindow) {
  Recorded run(3);
  for (int i = 1; i <= 5; ++i) run.step({1, i, 1});
  EXPECT_EQ(run.history->end(), 5u);
  EXPECT_EQ(run.history->first_kept(), 2u);
  for (size_t t = 2; t < 5; ++t) {
    EXPECT_EQ(run.history->tick(t).step, static_cast<int>(t) + 1);
    EXPECT_EQ(run.value(t, kQ), static_cast<int>(t) + 1);
  }
}

struct Seen : HistoryListener {
  void appended(const RunHistory& h, size_t t) override { steps.push_back(h.tick(t).step); }
  void reset_seen(const RunHistory&) override { steps.push_back(-1); }
  std::vector<int> steps;
};

TEST(RunHistory, MarksResetsAndAbortedSteps) {
  Recorded run(16);
  Seen seen;
  run.history->listen(&seen);
  run.step({1, 1, 1});
  run.cycle->reset_run();
  run.inputs->refuse = true;
  run.step({1, 2, 1});
  run.inputs->refuse = false;
  run.step({1, 3, 1});
  run.cycle->reset_run();
  EXPECT_EQ(seen.steps, (std::vector<int>{1, -1, 0, 1, -1}));
  EXPECT_FALSE(run.history->tick(0).after_reset);
  EXPECT_TRUE(run.history->tick(1).after_reset);
  EXPECT_TRUE(run.history->tick(1).aborted());
  for (size_t s = 0; s < 6; ++s) EXPECT_EQ(run.state(1, s), SampleState::kAbsent);
  EXPECT_FALSE(run.history->tick(2).after_reset);
  EXPECT_FALSE(run.history->tick(2).aborted());
  // The reset restarted the program: p is nil again.
  EXPECT_EQ(run.state(2, kP), SampleState::kNil);
  EXPECT_TRUE(run.history->reset_pending());
}

}  // namespace
