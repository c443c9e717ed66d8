// One node of the evaluation graph: a typed operator over operand items,
// computed on demand at most once per step.
#pragma once

#include "engine/eval_value.h"
#include "engine/step_op.h"

class EvalItem {
 public:
  /// `kind` is a ValueKind; the operand slots start null, for the builder.
  /// Up to two operands live in the item; more live in `room`, cleared,
  /// which outlives the item.
  EvalItem(int n_operands, int kind, EvalItem** room = nullptr);
  EvalItem(const EvalItem&) = delete;
  EvalItem& operator=(const EvalItem&) = delete;
  virtual ~EvalItem();

  virtual void reset() {}
  /// Ensures the operands this class reads, then combines them.
  virtual void compute(unsigned step);
  /// Memories only: ensures the operands the next state depends on.
  virtual void compute_next(unsigned step);
  /// Memories only: takes the next state.
  virtual void rewrite();
  /// Outputs only: non-zero when the clock was false.
  virtual int is_bottom();
  /// The extern type of the classes that have one; -1 after a warning
  /// for the others.
  virtual int extern_type_name();
  /// What the schedule does for an item of this class; OP_NONE for the
  /// base, which computes nothing.
  virtual StepOp step_op() const { return OP_NONE; }

  /// The ensuring rule: computes the item unless it already was at `step`.
  /// Deep graphs are walked with an explicit stack, never C recursion, and
  /// in exactly the order nested `compute` calls would take.
  void ensure(unsigned step);
  /// Re-initialises this item and everything below it that was computed.
  void reset_walk();
  /// False for the memories, whose `compute` reads no operand.
  bool demands() const { return demands_operands; }

  // The fields are ordered so that a million items waste no padding: an
  // item with its two operands fills 64 bytes.

  /// The operands; those of an item with at most two live in the item.
  EvalItem** operands;
  EvalValue value;
  int n_operands;
  /// The item's place among its program's items, in the order they were
  /// made; -1 for an item no program owns.
  int number = -1;
  unsigned status = ST_NIL;
  unsigned stamp = 0;
  /// Classes over enumerated or extern values (constants, inputs, outputs,
  /// memories, equality, choice): the string number of the type's name.
  /// 0 for every other class.
  int extern_type = 0;
  /// A ValueKind.
  uint8_t value_kind;

 protected:
  /// Operands `compute` ensures: all of them, except for the memories,
  /// whose `compute` only publishes the state they hold.
  bool demands_operands = true;

  /// Ensures every operand, in order.
  void ensure_operands(unsigned step);

 private:
  EvalItem* few_[2] = {};
};

/// A clock read by an output, assertion or memory must be defined; a nil
/// clock ends the process.
void check_clock(const EvalItem& clock);
[[noreturn]] void clock_takes_on_nil();
