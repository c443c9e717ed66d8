// The batch simulator: a program run one step per line of input values,
// writing the trace the interactive simulator writes with -v, or checking
// a recorded trace against a new run.
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
  LoadOptions load;
};

/// The exit status: 0, or 1 after a message on standard error.
int run_batch(const BatchOptions& options);
