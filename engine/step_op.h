// What a step does for each item, as the flat schedule runs it
// (engine/schedule.h): one operation per item class and the machine kind
// it works on. Bool and int are one kind there, since they are read and
// written alike; real and names each have their own.
#pragma once

#include <cstdint>

enum StepOp : uint8_t {
  // Told by the item classes of themselves. Constants and inputs take no
  // code; a memory computes by publishing its state and has a next-state
  // operation of its own; outputs and assertions are sampled by the step.
  OP_NONE,
  OP_CONST,
  OP_INPUT,
  OP_LAST_I,
  OP_LAST_R,
  OP_LAST_N,
  OP_FIRST,
  OP_OUTPUT_I,
  OP_OUTPUT_R,
  OP_OUTPUT_N,
  OP_NOT,
  OP_EQ_I,
  OP_NE_I,
  OP_LT_I,
  OP_LE_I,
  OP_GT_I,
  OP_GE_I,
  OP_EQ_R,
  OP_NE_R,
  OP_LT_R,
  OP_LE_R,
  OP_GT_R,
  OP_GE_R,
  OP_EQ_N,
  OP_NE_N,
  OP_ADD_I,
  OP_SUB_I,
  OP_MUL_I,
  OP_DIV_I,
  OP_MOD_I,
  OP_NEG_I,
  OP_ADD_R,
  OP_SUB_R,
  OP_MUL_R,
  OP_DIV_R,
  OP_NEG_R,
  OP_INT_TO_REAL,
  OP_REAL_TO_INT,
  OP_UNARY_CALL,
  OP_BINARY_CALL,
  OP_AND,
  OP_OR,
  OP_IMPL,
  OP_AT_MOST_ONE,
  OP_NONE_TRUE,
  OP_COND_I,
  OP_COND_R,
  OP_COND_N,
  // The schedule's own: an operand held as a name and read as a number,
  // or the other way round, which reads as zero with the operand's status;
  // a memory's state as it stands during the step, for a next state that
  // reads it; the fused `if`s; the clock check of a first-instant flag's
  // next state.
  OP_ZERO,
  OP_STATE,
  // An `if` over a comparison that nothing else reads, compared in place.
  OP_IF_EQ_I,
  OP_IF_NE_I,
  OP_IF_LT_I,
  OP_IF_LE_I,
  OP_IF_GT_I,
  OP_IF_GE_I,
  OP_IF_EQ_R,
  OP_IF_NE_R,
  OP_IF_LT_R,
  OP_IF_LE_R,
  OP_IF_GT_R,
  OP_IF_GE_R,
  OP_IF_EQ_N,
  OP_IF_NE_N,
  OP_CHECK_CLOCK,
  // Int operations whose second operand is a constant, held in the
  // instruction: its status is 0. A subtraction adds the opposite.
  OP_ADD_IK,
  OP_EQ_IK,
  OP_NE_IK,
  OP_LT_IK,
  OP_LE_IK,
  OP_GT_IK,
  OP_GE_IK,
  OP_IF_EQ_IK,
  OP_IF_NE_IK,
  OP_IF_LT_IK,
  OP_IF_LE_IK,
  OP_IF_GT_IK,
  OP_IF_GE_IK,
};
