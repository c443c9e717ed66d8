// The loaded program with its evaluation graph: one item per node of the
// final network, the tables the step cycle and the front ends work on, and
// the memories advanced after every step.
#pragma once

#include <memory>
#include <vector>

#include "engine/eval_item.h"
#include "reader/pnet_interface.h"

class SimProgram : public PNetInterface {
 public:
  /// Loads the file and builds the graph; a program that cannot be loaded
  /// or simulated ends the process with status 1 after its message.
  SimProgram(const char* path, SymbolTable* table, const LoadOptions& options = {});

  /// Advances every memory: all of them compute their next state, then all
  /// take it, so no memory sees another's new state.
  void end_step();
  /// Back to the state after the build: items reachable from the
  /// assertions and outputs re-initialised, step counter 0.
  void reset_eval();

  /// Takes ownership of an item made by the builder.
  EvalItem* own(EvalItem* item);
  /// The type output `i` is declared with. Its final node may stand for a
  /// class of nodes of several types, and carries the type of one of them.
  QvType* output_type(int i) const;

  /// Pass key of the build: marks the nodes that have their item.
  int build_key = 0;
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
  std::vector<std::unique_ptr<EvalItem>> items_;
};

/// Builds the whole graph: 0 on success, 1 when the program cannot be
/// simulated (the reason is on standard error).
int build_eval(SimProgram& program);
/// The item of a node, built on first request and shared afterwards; null
/// when the node cannot be simulated (the reason is on standard error).
EvalItem* build_item(SimProgram& program, Exp* e);
