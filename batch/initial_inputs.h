// The input side of a run without input lines: every input keeps the value
// a fresh input panel starts with, at every step.
#pragma once

#include "engine/interface.h"
#include "engine/sim_program.h"
#include "engine/step_io.h"

class InitialInputs : public StepInputs {
 public:
  /// Refuses and warns about the ports as the window does, then stores
  /// false, 0, 0.0 or the first constant of its type in each input, once:
  /// nothing else writes an input's value.
  explicit InitialInputs(SimProgram& program);

  const char* check() override { return nullptr; }
  void reset() override {}
};
