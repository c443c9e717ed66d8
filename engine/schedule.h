// A step as a flat schedule. The evaluation has no short-circuit, so the
// order in which the demand walk computes the items is the same at every
// step; it is taken once from the items, and a step then runs that order
// over compact arrays of values and statuses, one instruction per item,
// with every operand an index. The items stay the model: the schedule
// computes each of them at the very point of the walk where it would be
// computed, reading what it would read, so an item met again while it is
// still being ensured reads the value it held before.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "engine/eval_item.h"

class SimProgram;
class SampledEI;

// A slot holds one 64-bit word: a bool or int zero-extended, a double's
// bits, a name's address. An int then reads as the double whose low half is
// its value, and a real as the low half of its bits, without a conversion
// (engine/eval_value.h); only a name read as a number, or the other way
// round, needs one.

inline uint64_t word_of(int kind, const EvalValue& v) {
  switch (kind) {
    case VK_BOOL:
    case VK_INT:
      return static_cast<uint32_t>(v.i);
    case VK_REAL:
      return std::bit_cast<uint64_t>(v.d);
    default:
      return reinterpret_cast<uintptr_t>(v.s);
  }
}

/// The value field of kind `kind` holding word `w`.
inline void put_word(int kind, uint64_t w, EvalValue& v) {
  switch (kind) {
    case VK_BOOL:
    case VK_INT:
      v.i = static_cast<int32_t>(static_cast<uint32_t>(w));
      break;
    case VK_REAL:
      v.d = std::bit_cast<double>(w);
      break;
    default:
      v.s = reinterpret_cast<const char*>(static_cast<uintptr_t>(w));
  }
}

/// One computation. Its result goes to the slot of its place in the code;
/// the fields are operand slots, or what the operation says.
struct StepInstr {
  StepOp op;
  uint32_t a, b, c;
  /// A fused `if`'s else branch.
  uint32_t d;
};

/// An output or assertion and the slots of its operands.
struct ScheduleRoot {
  SampledEI* item;
  uint32_t value;
  uint32_t clock;
};

/// A memory taking its next state from slot `from` into its state `to`
/// when its clock is true; a nil clock ends the process. An int memory
/// keeps the low half of the word.
struct NextState {
  uint32_t from, clock, to;
  bool low_half;
};

/// A memory on the base clock taking the word of `from` as it is.
struct StateCopy {
  uint32_t from, to;
};

/// A first-instant flag: once true, it takes the negation of its clock.
struct FirstNext {
  uint32_t state, clock;
};

/// An instruction that differs at the first step from the steps after.
struct FirstStepInstr {
  uint32_t position;
  /// The one that is not in the code.
  StepInstr held;
};

/// What a program's step is made of. Slots: constants and inputs first,
/// then the memories' states (those of the first-instant flags last), then
/// one per instruction of `code`.
struct StepCode {
  /// One instruction per slot after `code_begin`, then an OP_END; as at the
  /// first step.
  std::vector<StepInstr> code;
  /// The assertions, then the outputs, whose code comes first, each's after
  /// the one before it.
  std::vector<ScheduleRoot> roots;
  /// After the roots' code, up to the end: the memories' next states'
  /// operands, newest memory first. Then the memories take them; as none
  /// reads another's state there, in any order.
  uint32_t advance_begin = 0;
  std::vector<StateCopy> copies;
  std::vector<NextState> clocked;
  std::vector<FirstNext> firsts;
  /// The operand slots of the items with any number of them.
  std::vector<uint32_t> lists;
  std::vector<double (*)(double)> unary;
  std::vector<double (*)(double, double)> binary;
  /// Each input item and its slot, which a step starts by filling.
  std::vector<std::pair<EvalItem*, uint32_t>> inputs;
  /// Swapped with the code after the first step, and back at a reset.
  std::vector<FirstStepInstr> first_step;
  uint32_t states_begin = 0;
  uint32_t first_states_begin = 0;
  uint32_t code_begin = 0;
  /// Every slot's value as a word (a 32-bit value zero-extended, a double's
  /// bits, a name's address) and its status, as the items start.
  std::vector<uint64_t> values;
  std::vector<uint8_t> statuses;
};

/// Derives the schedule of a program whose graph is built and not yet run.
StepCode derive_step_code(const SimProgram& program);

class Schedule {
 public:
  explicit Schedule(StepCode code) : c_(std::move(code)) {}

  /// Takes the values the front end wrote into the input items and
  /// computes what the assertions and outputs read.
  void begin_step();
  /// Writes the value, status and absence of root `i` (the assertions,
  /// then the outputs) into its item.
  void sample(size_t i);
  /// Advances every memory: all next states are computed, then all taken.
  void advance();
  /// Back to the state after the build: every status nil but the
  /// constants', memories nil, first-instant flags true. Values are kept,
  /// as the items keep theirs.
  void reset();

 private:
  void run(uint32_t begin, uint32_t end);
  /// Runs from `begin` up to the first OP_END.
  void run_to_end(uint32_t begin);
  void swap_first_step();

  StepCode c_;
  bool first_step_ = true;
};
