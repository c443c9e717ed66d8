// The two sides of a step that a front end supplies: the window's panels
// and the batch runner implement them, and the step cycle drives them.
#pragma once

/// Where input values come from.
struct StepInputs {
  virtual ~StepInputs() = default;
  /// Stores every input's value into its item's value field; returns null,
  /// or the error text of the first value that cannot be read (the step is
  /// then aborted, values stored before it stay).
  virtual const char* check() = 0;
  virtual void reset() = 0;
};

/// Where output values go.
struct StepOutputs {
  virtual ~StepOutputs() = default;
  /// Shows the value of every output item.
  virtual void update() = 0;
  virtual void reset() = 0;
};
