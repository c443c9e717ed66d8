// The loaded program with its evaluation graph: one item per node of the
// final network, the tables the step cycle and the front ends work on, and
// the memories advanced after every step. Once the graph is built, the
// net keeps its names and leaves but no operator node: the output, local
// and assertion node lists are empty, and so `record` finds nothing.
#pragma once

#include <deque>
#include <optional>
#include <vector>

#include "engine/eval_item.h"
#include "engine/item_pool.h"
#include "engine/schedule.h"
#include "reader/pnet_interface.h"

class SimProgram : public PNetInterface {
 public:
  /// Loads the file and builds the graph; a program that cannot be loaded
  /// or simulated ends the process with status 1 after its message.
  SimProgram(const char* path, SymbolTable* table, const LoadOptions& options = {});

  // A step: begin_step, every assertion then every output computed in
  // order, end_step. The schedule runs it; the items themselves, walked on
  // demand, are the model it keeps to, and can run it instead for a test.

  /// Advances the step counter and takes the values the front end wrote
  /// into the input items.
  void begin_step();
  /// Computes assertion `i`, or output `i`, for this step: its item then
  /// holds its value, status and absence.
  void compute_assertion(size_t i);
  void compute_output(size_t i);
  /// Advances every memory: all of them compute their next state, then all
  /// take it, so no memory sees another's new state.
  void end_step();
  /// Back to the state after the build: items reachable from the
  /// assertions and outputs re-initialised, step counter 0.
  void reset_eval();
  /// From now on, steps and resets walk the items instead of running the
  /// schedule: the model that tests compare the schedule with.
  /// Needs the items kept (LoadOptions::keep_items).
  void step_by_items();

  /// Where the builder makes the items, which the program owns.
  ItemPool& item_pool() { return items_; }
  /// Every item, in the order they were made.
  const std::deque<EvalItem*>& items() const { return items_.items(); }
  /// The type output `i` is declared with. Its final node may stand for a
  /// class of nodes of several types, and carries the type of one of them.
  QvType* output_type(int i) const { return output_types_[i]; }

  /// The clocked item of each output, in declaration order.
  std::vector<EvalItem*> output_items;
  std::vector<EvalItem*> assert_items;
  /// The item whose value field receives each input, in declaration order.
  std::vector<EvalItem*> input_items;
  /// Every memory and first-instant item in order of completion; walked
  /// from the back, so the newest comes first.
  std::vector<EvalItem*> memories;
  /// The stamp of the current step; 0 after the build and after a reset.
  unsigned step_counter = 0;

 private:
  ItemPool items_;
  std::vector<QvType*> output_types_;
  std::optional<Schedule> schedule_;
  bool by_items_ = false;
};

/// Builds the whole graph: 0 on success, 1 when the program cannot be
/// simulated (the reason is on standard error).
int build_eval(SimProgram& program);
