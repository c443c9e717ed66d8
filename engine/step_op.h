// What a step does for each item, as the flat schedule runs it
// (engine/schedule.h): one operation per item class and the machine kind
// it works on. Bool and int are one kind there, since they are read and
// written alike; real and names each have their own.
#pragma once

#include <cstdint>

// Listed once, as X(NAME) for OP_NAME: the enum and the step loop's table
// of handlers are both made from this list, so they cannot disagree.
#define KORVEL_STEP_OPS(X) \
  /* Told by the item classes of themselves. Constants and inputs take no */ \
  /* code; a memory computes by publishing its state and has a next-state */ \
  /* operation of its own; outputs and assertions are sampled by the step. */ \
  X(NONE) \
  X(CONST) \
  X(INPUT) \
  X(LAST_I) \
  X(LAST_R) \
  X(LAST_N) \
  X(FIRST) \
  X(OUTPUT_I) \
  X(OUTPUT_R) \
  X(OUTPUT_N) \
  X(NOT) \
  X(EQ_I) \
  X(NE_I) \
  X(LT_I) \
  X(LE_I) \
  X(GT_I) \
  X(GE_I) \
  X(EQ_R) \
  X(NE_R) \
  X(LT_R) \
  X(LE_R) \
  X(GT_R) \
  X(GE_R) \
  X(EQ_N) \
  X(NE_N) \
  X(ADD_I) \
  X(SUB_I) \
  X(MUL_I) \
  X(DIV_I) \
  X(MOD_I) \
  X(NEG_I) \
  X(ADD_R) \
  X(SUB_R) \
  X(MUL_R) \
  X(DIV_R) \
  X(NEG_R) \
  X(INT_TO_REAL) \
  X(REAL_TO_INT) \
  X(UNARY_CALL) \
  X(BINARY_CALL) \
  X(AND) \
  X(OR) \
  X(IMPL) \
  X(AT_MOST_ONE) \
  X(NONE_TRUE) \
  X(COND_I) \
  X(COND_R) \
  X(COND_N) \
  /* The schedule's own: an operand held as a name and read as a number, */ \
  /* or the other way round, which reads as zero with the operand's status; */ \
  /* a memory's state as it stands during the step, for a next state that */ \
  /* reads it; the fused `if`s; the clock check of a first-instant flag's */ \
  /* next state. */ \
  X(ZERO) \
  X(STATE) \
  /* An `if` over a comparison that nothing else reads, compared in place. */ \
  X(IF_EQ_I) \
  X(IF_NE_I) \
  X(IF_LT_I) \
  X(IF_LE_I) \
  X(IF_GT_I) \
  X(IF_GE_I) \
  X(IF_EQ_R) \
  X(IF_NE_R) \
  X(IF_LT_R) \
  X(IF_LE_R) \
  X(IF_GT_R) \
  X(IF_GE_R) \
  X(IF_EQ_N) \
  X(IF_NE_N) \
  X(CHECK_CLOCK) \
  /* Int operations whose second operand is a constant, held in the */ \
  /* instruction: its status is 0. A subtraction adds the opposite. */ \
  X(ADD_IK) \
  X(EQ_IK) \
  X(NE_IK) \
  X(LT_IK) \
  X(LE_IK) \
  X(GT_IK) \
  X(GE_IK) \
  X(IF_EQ_IK) \
  X(IF_NE_IK) \
  X(IF_LT_IK) \
  X(IF_LE_IK) \
  X(IF_GT_IK) \
  X(IF_GE_IK) \
  /* Name comparisons whose second operand is a constant, read from its */ \
  /* slot: its status is 0. */ \
  X(EQ_NK) \
  X(NE_NK) \
  X(IF_EQ_NK) \
  X(IF_NE_NK) \
  /* Where a run of the code stops: put over the instruction after the */ \
  /* last one to run while it runs, and after the whole code for good. */ \
  X(END)

enum StepOp : uint8_t {
#define KORVEL_STEP_OP_ENUM(name) OP_##name,
  KORVEL_STEP_OPS(KORVEL_STEP_OP_ENUM)
#undef KORVEL_STEP_OP_ENUM
};
