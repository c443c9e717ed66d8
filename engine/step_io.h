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

/// Told of every step, abort and reset after the trace has them; a record
/// of the run (a history, a diagram) watches the cycle through this.
struct StepObserver {
  virtual ~StepObserver() = default;
  /// The outputs of step `step` are computed; the memories have not yet
  /// advanced, so every item still holds this step's value.
  virtual void stepped(int step) = 0;
  /// The inputs could not be read: no reaction took place.
  virtual void aborted() = 0;
  virtual void was_reset() = 0;
};
