// The input side of a run without input lines: every input keeps the value
// a fresh input panel starts with, at every step.
#pragma once

#include <vector>

#include "engine/interface.h"
#include "engine/sim_program.h"
#include "engine/step_io.h"

class InitialInputs : public StepInputs {
 public:
  /// Refuses and warns about the ports as the window does.
  explicit InitialInputs(SimProgram& program);

  /// Stores false, 0, 0.0 or the first constant of its type in each input.
  const char* check() override;
  void reset() override {}

 private:
  std::vector<Port> ports_;
};
