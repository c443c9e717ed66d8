// The batch simulator: a program run one step per line of input values,
// writing the trace the interactive simulator writes with -v, or checking
// a recorded trace against a new run; or run a number of steps with its
// inputs at their initial values, writing no trace, to time it.
#pragma once

#include "norm/load_options.h"

struct BatchOptions {
  const char* program = nullptr;
  /// Null reads standard input.
  const char* inputs = nullptr;
  /// The inputs are a recorded trace whose outputs must be reproduced.
  bool check = false;
  /// Timing diagrams of the run, when not null.
  const char* vcd = nullptr;
  const char* svg = nullptr;
  /// Steps to run with every input at its initial value and no trace;
  /// negative reads the steps from `inputs`.
  int steps = -1;
  /// After those steps, print the time of each load phase and of the
  /// steps, and the peak memory.
  bool stats = false;
  LoadOptions load;
};

/// The exit status: 0, or 1 after a message on standard error.
int run_batch(const BatchOptions& options);
