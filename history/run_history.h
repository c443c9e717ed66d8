// The history of a run: for every step, the value and state of every input
// and output, with the resets and aborted steps between them. It watches a
// step cycle, so both front ends fill it the same way, and it keeps only
// the last `window` steps, so a long run costs bounded memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/interface.h"
#include "engine/sim_program.h"
#include "engine/step_io.h"

enum class SampleState : uint8_t {
  kDefined,
  kNil,
  kDivZero,
  /// The output's clock was false, or no reaction took place.
  kAbsent,
};

struct Sample {
  EvalValue value;
  SampleState state;
};

/// Both drawn as one segment: the same state and, when defined, the same
/// value of a signal of `kind` (reals compared bit for bit).
bool same_sample(PortKind kind, const Sample& a, const Sample& b);
/// A defined value as a segment's label: "%d", "%g" or the constant's name.
std::string sample_label(PortKind kind, const Sample& s);

/// One column of the history: a step taken, or one the inputs aborted.
struct Tick {
  /// The step's number as the trace shows it; 0 for an aborted step.
  int step;
  /// A reset came just before this tick.
  bool after_reset;
  bool aborted() const { return step == 0; }
};

struct Signal {
  const Port* port;
  bool output;
};

class RunHistory;

/// Told of each tick as it is recorded; a reset is seen on the next tick,
/// or through `RunHistory::reset_pending` at the end of a run.
struct HistoryListener {
  virtual ~HistoryListener() = default;
  virtual void appended(const RunHistory& history, size_t tick) = 0;
  virtual void reset_seen(const RunHistory&) {}
};

class RunHistory : public StepObserver {
 public:
  /// Keeps the last `window` ticks (at least one).
  RunHistory(SimProgram& program, size_t window);

  const char* node_name() const { return node_name_; }
  /// Inputs, then outputs, each in declaration order.
  const std::vector<Signal>& signals() const { return signals_; }
  size_t window() const { return window_; }

  /// Ticks are numbered from 0 since the start of the run; those from
  /// `first_kept()` to `end()` (excluded) are kept.
  size_t end() const { return n_ticks_; }
  size_t first_kept() const { return n_ticks_ > window_ ? n_ticks_ - window_ : 0; }
  const Tick& tick(size_t t) const { return ticks_[t % window_]; }
  /// The samples of a kept tick, one per signal.
  const Sample* samples(size_t t) const { return &samples_[(t % window_) * signals_.size()]; }
  /// A reset came after the last tick.
  bool reset_pending() const { return reset_pending_; }

  void listen(HistoryListener* listener) { listeners_.push_back(listener); }

  void stepped(int step) override;
  void aborted() override;
  void was_reset() override;

 private:
  Sample* append(int step);

  SimProgram& program_;
  const char* node_name_;
  ProgramInterface interface_;
  std::vector<Signal> signals_;
  size_t window_;
  size_t n_ticks_ = 0;
  std::vector<Tick> ticks_;
  std::vector<Sample> samples_;
  bool reset_pending_ = false;
  std::vector<HistoryListener*> listeners_;
};
