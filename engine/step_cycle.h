// The step and reset cycle of a loaded program, with its trace. The window
// and the batch simulator both drive a program through this one component,
// each supplying its own input and output sides.
#pragma once

#include "engine/sim_program.h"
#include "engine/step_io.h"

class StepCycle {
 public:
  StepCycle(SimProgram& program, StepInputs& inputs, StepOutputs& outputs);

  /// "#program" and the interface line; written once, before any step.
  void trace_header();
  /// One reaction of the node: false, with the abort in the trace and
  /// nothing else changed, when the inputs cannot be read.
  bool step();
  /// Back to the initial state; the next step is step 1.
  void reset_run();
  /// Adds a watcher, told of what follows in the order watchers were added.
  void observe(StepObserver* observer) { observers_.push_back(observer); }

  /// The number of the last step taken, as the trace shows it.
  int step_number() const { return step_number_; }
  SimProgram& program() { return program_; }

 private:
  void trace_values(const std::vector<EvalItem*>& items);

  SimProgram& program_;
  StepInputs& inputs_;
  StepOutputs& outputs_;
  int step_number_ = 0;
  std::vector<StepObserver*> observers_;
};

/// Room for the text of any value, the widest being a real in "%lf".
constexpr int kValueTextSize = 400;

/// The text of an item's value as the trace shows it: t or f, "%d", "%lf",
/// or the constant's name. Returns `buffer`, or the name itself.
const char* value_text(const EvalItem& item, char (&buffer)[kValueTextSize]);
