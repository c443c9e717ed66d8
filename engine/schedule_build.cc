// Deriving a program's schedule from its items: the demand walk of a step,
// taken once, written down as instructions over slots.
#include <algorithm>
#include <cstdint>
#include <deque>
#include <vector>

#include "engine/eval_items.h"
#include "engine/schedule.h"
#include "engine/sim_program.h"
#include "support/diagnostics.h"

namespace {

constexpr uint32_t kUnplaced = UINT32_MAX;
/// Reached by the walk and not yet computed: on its stack.
constexpr uint32_t kWalking = UINT32_MAX - 1;

/// Whether operation `op` reads its operand `j` as a name; every other read
/// is of a number.
bool reads_name(StepOp op, int j) {
  switch (op) {
    case OP_EQ_N:
    case OP_NE_N:
      return true;
    case OP_COND_N:
      return j != 0;
    case OP_OUTPUT_N:
    case OP_LAST_N:
      return j == 0;
    default:
      return false;
  }
}

/// A number read as a name, or a name as a number, reads as zero; int and
/// real read each other from the word's bits, as they are laid out.
bool reads_as_zero(StepOp op, const EvalItem& item, int j) {
  return reads_name(op, j) != (item.operands[j]->value_kind == VK_EXTERN);
}

/// A step of the walk in the order it takes them: compute an item, read
/// its operand `operand` as zero, check its clock, keep a memory's state
/// for the next states, or sample a root or take a memory's next state,
/// once what they read is computed.
struct Entry {
  enum What : uint8_t { kCompute, kZero, kCheck, kState, kRoot, kNext };
  /// Beyond the operands an entry can name; an item with more is refused.
  static constexpr int kMaxOperand = (1 << 29) - 1;

  EvalItem* item;
  /// In the walk's order, then in the code: where its instruction goes.
  uint32_t position;
  // A million items take as many entries: 16 bytes each, not 24.
  What what : 3;
  uint32_t operand : 29;
};
static_assert(sizeof(void*) != 8 || sizeof(Entry) == 16);

// The comparisons and their fused `if`s are listed in the same order.
static_assert(OP_NE_N - OP_EQ_I == OP_IF_NE_N - OP_IF_EQ_I);

/// The fused `if` of a comparison, or OP_NONE.
StepOp fused_if(StepOp compare) {
  if (compare < OP_EQ_I || compare > OP_NE_N) return OP_NONE;
  return static_cast<StepOp>(OP_IF_EQ_I + (compare - OP_EQ_I));
}

// The int comparisons, their fused `if`s and the forms of both over a
// constant are listed in the same order.
static_assert(OP_GE_I - OP_EQ_I == OP_GE_IK - OP_EQ_IK);
static_assert(OP_IF_GE_I - OP_IF_EQ_I == OP_IF_GE_IK - OP_IF_EQ_IK);
// So are the name equalities and theirs over a constant.
static_assert(OP_NE_N - OP_EQ_N == OP_NE_NK - OP_EQ_NK);
static_assert(OP_IF_NE_N - OP_IF_EQ_N == OP_IF_NE_NK - OP_IF_EQ_NK);

bool is_choice(StepOp op) {
  return op == OP_COND_I || op == OP_COND_R || op == OP_COND_N;
}

class Deriver {
 public:
  explicit Deriver(const SimProgram& p)
      : p_(p),
        op_(p.items().size(), OP_NONE),
        slot_(op_.size(), kUnplaced),
        state_(slot_),
        kept_(slot_),
        computed_at_(slot_),
        fused_(slot_.size(), 0),
        elided_(slot_.size(), 0),
        aliased_(slot_.size(), 0) {
    // An entry per item reached, and at most three per memory and one per
    // root besides, but for the rare operands read as zero.
    entries_.reserve(op_.size() + 2 * p.memories.size() + p.assert_items.size() +
                     p.output_items.size());
  }

  StepCode derive() {
    place_leaves_and_states();
    for (EvalItem* root : p_.assert_items) walk_root(root);
    for (EvalItem* root : p_.output_items) walk_root(root);
    const auto advance_entry = static_cast<uint32_t>(entries_.size());
    for (auto m = p_.memories.rbegin(); m != p_.memories.rend(); ++m) walk_next(*m);
    count_reads();
    fuse_comparisons();
    elide_first_choices();
    find_aliases(advance_entry);
    lay_out(advance_entry);
    encode();
    return std::move(out_);
  }

 private:
  struct Frame {
    EvalItem* item;
    int next;
  };

  /// An item's operation, asked of each item once: the walks below ask
  /// for it again and again, and a virtual call reaches into the item.
  StepOp op(const EvalItem& x) const { return op_[x.number]; }

  /// Whether `item` reads a constant number as its operand `j`, and which
  /// word as an int reads it.
  bool reads_constant(const EvalItem& item, int j, uint32_t& word) const {
    if (!reads_constant_slot(item, j)) return false;
    word = constant_word(*item.operands[j]);
    return true;
  }

  /// Whether `item` reads a constant as its operand `j`, as it is.
  bool reads_constant_slot(const EvalItem& item, int j) const {
    return op(*item.operands[j]) == OP_CONST && !reads_as_zero(op(item), item, j);
  }

  /// A constant's word as an int reads it.
  static uint32_t constant_word(const EvalItem& constant) {
    return static_cast<uint32_t>(word_of(constant.value_kind, constant.value));
  }

  /// Whether a memory or first-instant flag reads a clock that is always
  /// true.
  bool clock_always_true(const EvalItem& memory, int j) const {
    return reads_constant_slot(memory, j) && constant_word(*memory.operands[j]) != 0;
  }

  uint32_t new_slot(uint64_t value, uint8_t status) {
    if (out_.values.size() >= kWalking) internal_error("file 'schedule_build':\ntoo many items\n");
    out_.values.push_back(value);
    out_.statuses.push_back(status);
    return static_cast<uint32_t>(out_.values.size() - 1);
  }

  // Inputs are read only once ensured, so their status is 0 whenever it is
  // read; a constant's never changes.
  void place_leaves_and_states() {
    for (EvalItem* x : p_.items()) {
      op_[x->number] = x->step_op();
      if (op(*x) == OP_CONST || op(*x) == OP_INPUT) {
        slot_[x->number] = new_slot(word_of(x->value_kind, x->value), 0);
        if (op(*x) == OP_INPUT) out_.inputs.emplace_back(x, slot_[x->number]);
      }
    }
    out_.states_begin = static_cast<uint32_t>(out_.values.size());
    for (EvalItem* m : p_.memories) {
      if (op(*m) != OP_FIRST) state_[m->number] = new_slot(0, ST_NIL);
    }
    out_.first_states_begin = static_cast<uint32_t>(out_.values.size());
    for (EvalItem* m : p_.memories) {
      if (op(*m) == OP_FIRST) state_[m->number] = new_slot(1, 0);
    }
    out_.code_begin = static_cast<uint32_t>(out_.values.size());
  }

  // EvalItem::ensure, with the entry of an item written where it would be
  // computed.
  void walk(EvalItem* x) {
    if (slot_[x->number] != kUnplaced) return;
    slot_[x->number] = kWalking;
    stack_.push_back({x, 0});
    while (!stack_.empty()) {
      Frame& top = stack_.back();
      EvalItem* item = top.item;
      if (item->demands() && top.next < item->n_operands) {
        EvalItem* operand = item->operands[top.next++];
        if (slot_[operand->number] == kUnplaced) {
          slot_[operand->number] = kWalking;
          stack_.push_back({operand, 0});
        }
        continue;
      }
      stack_.pop_back();
      if (!item->demands()) {
        publish_state(item);
        continue;
      }
      add_zeros(item);
      slot_[item->number] = position_;
      add(Entry::kCompute, item);
    }
  }

  // A memory computes by copying its state, the status always and the
  // value when defined, and no reader looks at an undefined value; nor is
  // it ever read before it is computed, having no operand to wait for. So
  // its readers read its state, which changes only once every next state
  // is computed, and it takes no instruction.
  void publish_state(EvalItem* memory) { slot_[memory->number] = state_[memory->number]; }

  void walk_root(EvalItem* root) {
    walk(root->operands[0]);
    walk(root->operands[1]);
    add_zeros(root);
    add(Entry::kRoot, root);
  }

  // A memory's next state reads the value its operands have at this step.
  // An operand that is another memory has it in its state only until that
  // memory takes its own next state, which may come first: it is read from
  // a copy made before any memory takes its state.
  void walk_next(EvalItem* memory) {
    for (int j = 0; j < memory->n_operands; ++j) {
      EvalItem* operand = memory->operands[j];
      walk(operand);
      if (reads_state_of_other(*memory, j) && kept_[operand->number] == kUnplaced) {
        kept_[operand->number] = kWalking;
        add(Entry::kState, operand);
      }
    }
    if (op(*memory) == OP_FIRST) add(Entry::kCheck, memory);
    add_zeros(memory);
    add(Entry::kNext, memory);
  }

  bool reads_state_of_other(const EvalItem& memory, int j) const {
    const EvalItem& operand = *memory.operands[j];
    return !operand.demands() && &operand != &memory && !reads_as_zero(op(memory), memory, j);
  }

  void add_zeros(EvalItem* item) {
    for (int j = 0; j < item->n_operands; ++j) {
      if (!reads_as_zero(op(*item), *item, j)) continue;
      if (j > Entry::kMaxOperand) internal_error("file 'schedule_build':\ntoo many operands\n");
      add(Entry::kZero, item, j);
    }
  }

  static bool takes_slot(const Entry& e) {
    return e.what != Entry::kRoot && e.what != Entry::kNext;
  }

  void add(Entry::What what, EvalItem* item, int operand = 0) {
    if (what == Entry::kCompute) computed_at_[item->number] = static_cast<uint32_t>(entries_.size());
    entries_.push_back({item, position_, what, static_cast<uint32_t>(operand)});
    if (takes_slot(entries_.back()) && out_.code_begin + ++position_ >= kWalking) {
      internal_error("file 'schedule_build':\ntoo many items\n");
    }
  }

  /// How many times each item is read, counts stopping at two.
  void count_reads() {
    reads_.assign(slot_.size(), 0);
    auto read = [&](const EvalItem* x) { reads_[x->number] = std::min(reads_[x->number] + 1, 2); };
    for (const Entry& e : entries_) {
      if (e.what == Entry::kZero || e.what == Entry::kState) continue;
      const int n = e.what == Entry::kCheck ? 1 : e.item->n_operands;
      for (int j = 0; j < n; ++j) read(e.item->operands[j]);
      // A first-instant flag's next state reads its own value.
      if (e.what == Entry::kNext && op(*e.item) == OP_FIRST) read(e.item);
    }
  }

  // A comparison that only its `if` reads, as its condition, is compared
  // by the `if` itself: one instruction less. It still compares what it
  // would have compared: read by no one else, it is reached from its `if`
  // only, so it comes right after the `if` on the walk's stack, and each of
  // its operands is either computed before it or still on the stack below
  // the `if`, to be computed after it. An int `if` over a real branch
  // keeps its own instruction, which takes the branch's low half.
  void fuse_comparisons() {
    for (const Entry& e : entries_) {
      if (e.what != Entry::kCompute || !is_choice(op(*e.item))) continue;
      const EvalItem& choice = *e.item;
      const EvalItem& compare = *choice.operands[0];
      const StepOp compare_op = op(compare);
      fused_[compare.number] =
          fused_if(compare_op) != OP_NONE && reads_[compare.number] == 1 &&
          !reads_as_zero(compare_op, compare, 0) && !reads_as_zero(compare_op, compare, 1) &&
          !(op(choice) == OP_COND_I && (choice.operands[1]->value_kind == VK_REAL ||
                                        choice.operands[2]->value_kind == VK_REAL));
    }
  }

  // A first-instant flag on the base clock is true at the first step and
  // false from then on, until a reset: an `->` over it is its left operand
  // at the first step and its right one after. When nothing else reads
  // the right operand, the two share its slot and the `->` takes no
  // instruction: the right operand's instruction copies the left operand
  // at the first step instead (`first_step`), which no one misses, and
  // computes from then on. The slot holds the value of the `->` between
  // steps, which is what a read before it is computed (a cycle, a memory
  // read from it) wants. Read by the `->` alone, the right operand is
  // reached from it only, and computed right before it.
  void elide_first_choices() {
    for (uint32_t i = 0; i < entries_.size(); ++i) {
      const Entry& e = entries_[i];
      if (e.what != Entry::kCompute || !is_choice(op(*e.item))) continue;
      const EvalItem& choice = *e.item;
      const EvalItem& right = *choice.operands[2];
      bool plain = true;
      for (int j = 0; j < 3; ++j) plain = plain && !reads_as_zero(op(choice), choice, j);
      // An int `->` over a real operand takes its low half.
      const bool whole = op(choice) != OP_COND_I || (choice.operands[1]->value_kind != VK_REAL &&
                                                     right.value_kind != VK_REAL);
      elided_[choice.number] = plain && whole && true_only_first(*choice.operands[0]) &&
                               i > 0 && computed_at_[right.number] == i - 1 && !fused_[right.number] &&
                               !elided_[right.number] && reads_[right.number] == 1;
    }
  }

  /// A first-instant flag whose clock is a true constant.
  bool true_only_first(const EvalItem& flag) const {
    return op(flag) == OP_FIRST && clock_always_true(flag, 0);
  }

  /// Where an item is computed: for an elided `->`, where its right
  /// operand is.
  uint32_t computed_at(const EvalItem& x) const {
    return computed_at_[(elided_[x.number] ? *x.operands[2] : x).number];
  }

  // A memory on the base clock holds the value its operand had at the
  // step before. When every read of the memory comes before its operand is
  // computed, or with it (an instruction reads its operands before it
  // writes), the operand's own slot still holds that value there: the
  // memory is read from it and takes no next state. It is nil at the first
  // step and after a reset, as the operand's slot is then.
  void find_aliases(uint32_t advance_entry) {
    constexpr uint32_t kAfterTheCode = UINT32_MAX;
    std::vector<uint32_t> last_read(slot_.size(), 0);
    auto note = [&](const EvalItem* read, uint32_t at) {
      last_read[read->number] = std::max(last_read[read->number], at);
    };
    for (uint32_t i = 0; i < entries_.size(); ++i) {
      const Entry& e = entries_[i];
      switch (e.what) {
        case Entry::kCompute: {
          // A comparison its `if` makes reads its operands where the `if` is;
          // an elided `->` reads its left operand at the first step only,
          // right before.
          if (fused_[e.item->number]) break;
          if (elided_[e.item->number]) {
            note(e.item->operands[1], i);
            break;
          }
          for (int j = 0; j < e.item->n_operands; ++j) note(e.item->operands[j], i);
          if (is_choice(op(*e.item)) && fused_[e.item->operands[0]->number]) {
            const EvalItem& compare = *e.item->operands[0];
            for (int j = 0; j < compare.n_operands; ++j) note(compare.operands[j], i);
          }
          break;
        }
        case Entry::kZero:
          note(e.item->operands[e.operand], i);
          break;
        case Entry::kCheck:
          note(e.item->operands[0], i);
          break;
        case Entry::kState:
          note(e.item, i);
          break;
        case Entry::kRoot:
          // Sampled once all of the roots' code has run.
          note(e.item->operands[0], advance_entry);
          note(e.item->operands[1], advance_entry);
          break;
        case Entry::kNext:
          // A memory read through a copy is read where the copy is made.
          for (int j = 0; j < e.item->n_operands; ++j) {
            if (!reads_state_of_other(*e.item, j)) note(e.item->operands[j], kAfterTheCode);
          }
          break;
      }
    }
    for (const EvalItem* m : p_.memories) {
      if (!takes_word_always(*m)) continue;
      const EvalItem& operand = *m->operands[0];
      const uint32_t at = computed_at(operand);
      aliased_[m->number] = at != kUnplaced && !fused_[operand.number] && last_read[m->number] <= at;
    }
  }

  /// A computation with no instruction: a fused comparison, an elided `->`.
  bool is_folded(const Entry& e) const {
    return e.what == Entry::kCompute && (fused_[e.item->number] || elided_[e.item->number]);
  }

  /// Code positions in the walk's order, leaving out the folded items.
  void lay_out(uint32_t advance_entry) {
    uint32_t next = 0;
    for (size_t i = 0; i < entries_.size(); ++i) {
      Entry& e = entries_[i];
      if (i == advance_entry) out_.advance_begin = next;
      if (takes_slot(e) && !is_folded(e)) e.position = next++;
    }
    if (advance_entry == entries_.size()) out_.advance_begin = next;
    position_ = next;
    // The right operand of an elided `->` comes before it.
    for (const Entry& e : entries_) {
      if (e.what == Entry::kCompute && elided_[e.item->number]) {
        slot_[e.item->number] = slot_[e.item->operands[2]->number];
      } else if (e.what == Entry::kCompute && !fused_[e.item->number]) {
        slot_[e.item->number] = out_.code_begin + e.position;
      }
      if (e.what == Entry::kState) kept_[e.item->number] = out_.code_begin + e.position;
    }
    for (const EvalItem* m : p_.memories) {
      if (aliased_[m->number]) slot_[m->number] = slot_[m->operands[0]->number];
    }
  }

  // The zero readings of an item come right before it, in operand order.
  uint32_t operand_slot(const EvalItem& item, int j) {
    if (reads_as_zero(op(item), item, j)) return zeros_[next_zero_++];
    return slot_[item.operands[j]->number];
  }

  void encode() {
    out_.code.resize(position_ + 1);
    out_.code.back().op = OP_END;
    out_.values.resize(out_.code_begin + position_, 0);
    out_.statuses.resize(out_.code_begin + position_, ST_NIL);
    for (const Entry& e : entries_) {
      const EvalItem& item = *e.item;
      switch (e.what) {
        case Entry::kZero:
          zeros_.push_back(out_.code_begin + e.position);
          out_.code[e.position] = {OP_ZERO, slot_[item.operands[e.operand]->number], 0, 0, 0};
          continue;
        case Entry::kCheck:
          out_.code[e.position] = {OP_CHECK_CLOCK, slot_[item.operands[0]->number], 0, 0, 0};
          continue;
        case Entry::kState:
          out_.code[e.position] = {OP_STATE, slot_[item.number], 0, 0, 0};
          continue;
        case Entry::kCompute: {
          if (fused_[item.number]) continue;
          const uint32_t slot = slot_[item.number];
          out_.values[slot] = word_of(item.value_kind, item.value);
          out_.statuses[slot] = static_cast<uint8_t>(item.status);
          if (elided_[item.number]) {
            // Its right operand's instruction is already in place.
            StepInstr& right = out_.code[slot - out_.code_begin];
            out_.first_step.push_back({slot - out_.code_begin, right});
            right = {OP_STATE, operand_slot(item, 1), 0, 0, 0};
            continue;
          }
          out_.code[e.position] = compute(item);
          break;
        }
        case Entry::kRoot:
          out_.roots.push_back({static_cast<SampledEI*>(e.item), operand_slot(item, 0),
                                operand_slot(item, 1)});
          break;
        case Entry::kNext:
          add_next_state(item);
          break;
      }
      zeros_.clear();
      next_zero_ = 0;
    }
  }

  StepInstr by_constant(const EvalItem& item, uint32_t k) {
    const uint32_t a = operand_slot(item, 0);
    switch (op(item)) {
      case OP_ADD_I:
        return {OP_ADD_IK, a, k, 0, 0};
      case OP_SUB_I:
        return {OP_ADD_IK, a, 0u - k, 0, 0};
      default:
        return {static_cast<StepOp>(OP_EQ_IK + (op(item) - OP_EQ_I)), a, k, 0, 0};
    }
  }

  StepInstr compute(const EvalItem& item) {
    const StepOp item_op = op(item);
    switch (item_op) {
      case OP_COND_I:
      case OP_COND_R:
      case OP_COND_N:
        if (fused_[item.operands[0]->number]) {
          const EvalItem& compare = *item.operands[0];
          const StepOp fused = fused_if(op(compare));
          uint32_t k;
          if (fused >= OP_IF_EQ_I && fused <= OP_IF_GE_I && reads_constant(compare, 1, k)) {
            return {static_cast<StepOp>(OP_IF_EQ_IK + (fused - OP_IF_EQ_I)),
                    slot_[compare.operands[0]->number], k, operand_slot(item, 1),
                    operand_slot(item, 2)};
          }
          if (fused >= OP_IF_EQ_N && reads_constant_slot(compare, 1)) {
            return {static_cast<StepOp>(OP_IF_EQ_NK + (fused - OP_IF_EQ_N)),
                    slot_[compare.operands[0]->number], slot_[compare.operands[1]->number],
                    operand_slot(item, 1), operand_slot(item, 2)};
          }
          return {fused, slot_[compare.operands[0]->number], slot_[compare.operands[1]->number],
                  operand_slot(item, 1), operand_slot(item, 2)};
        }
        break;
      case OP_ADD_I:
      case OP_SUB_I:
      case OP_EQ_I:
      case OP_NE_I:
      case OP_LT_I:
      case OP_LE_I:
      case OP_GT_I:
      case OP_GE_I:
        if (uint32_t k; reads_constant(item, 1, k)) return by_constant(item, k);
        break;
      case OP_EQ_N:
      case OP_NE_N:
        if (reads_constant_slot(item, 1)) {
          return {static_cast<StepOp>(OP_EQ_NK + (item_op - OP_EQ_N)), operand_slot(item, 0),
                  slot_[item.operands[1]->number], 0, 0};
        }
        break;
      case OP_UNARY_CALL:
        out_.unary.push_back(static_cast<const UFUNC_double_EI&>(item).op.function);
        return {item_op, operand_slot(item, 0), static_cast<uint32_t>(out_.unary.size() - 1), 0, 0};
      case OP_BINARY_CALL:
        out_.binary.push_back(static_cast<const BFUNC_double_EI&>(item).op.function);
        return {item_op, operand_slot(item, 0), operand_slot(item, 1),
                static_cast<uint32_t>(out_.binary.size() - 1), 0};
      case OP_AT_MOST_ONE:
      case OP_NONE_TRUE: {
        const auto begin = static_cast<uint32_t>(out_.lists.size());
        for (int j = 0; j < item.n_operands; ++j) out_.lists.push_back(operand_slot(item, j));
        return {item_op, begin, static_cast<uint32_t>(item.n_operands), 0, 0};
      }
      case OP_NONE:
      case OP_CONST:
      case OP_INPUT:
      case OP_OUTPUT_I:
      case OP_OUTPUT_R:
      case OP_OUTPUT_N:
      case OP_LAST_I:
      case OP_LAST_R:
      case OP_LAST_N:
      case OP_FIRST:
      case OP_ZERO:
      case OP_STATE:
      case OP_CHECK_CLOCK:
      case OP_ADD_IK:
      case OP_EQ_IK:
      case OP_NE_IK:
      case OP_LT_IK:
      case OP_LE_IK:
      case OP_GT_IK:
      case OP_GE_IK:
      case OP_IF_EQ_IK:
      case OP_IF_NE_IK:
      case OP_IF_LT_IK:
      case OP_IF_LE_IK:
      case OP_IF_GT_IK:
      case OP_IF_GE_IK:
      case OP_EQ_NK:
      case OP_NE_NK:
      case OP_IF_EQ_NK:
      case OP_IF_NE_NK:
      case OP_END:
        internal_error("file 'schedule_build':\nno instruction for operation %d\n", item_op);
      default:
        break;
    }
    StepInstr instr{item_op, 0, 0, 0, 0};
    uint32_t* fields[] = {&instr.a, &instr.b, &instr.c};
    for (int j = 0; j < item.n_operands; ++j) *fields[j] = operand_slot(item, j);
    return instr;
  }

  uint32_t next_operand_slot(const EvalItem& memory, int j) {
    if (reads_state_of_other(memory, j)) return kept_[memory.operands[j]->number];
    return operand_slot(memory, j);
  }

  // A first-instant flag reads its own value, which is its state; its
  // clock was checked in the code.
  void add_next_state(const EvalItem& memory) {
    const uint32_t state = state_[memory.number];
    if (op(memory) == OP_FIRST) {
      out_.firsts.push_back({state, next_operand_slot(memory, 0)});
      return;
    }
    if (aliased_[memory.number]) return;
    const uint32_t from = next_operand_slot(memory, 0);
    if (takes_word_always(memory)) {
      out_.copies.push_back({from, state});
    } else {
      out_.clocked.push_back({from, next_operand_slot(memory, 1), state,
                              op(memory) == OP_LAST_I});
    }
  }

  /// A memory on the base clock whose state is its operand's word as it is.
  /// Every slot of an int holds its value zero-extended; only a real's word
  /// needs cutting.
  bool takes_word_always(const EvalItem& memory) const {
    const StepOp memory_op = op(memory);
    if (memory_op == OP_FIRST || reads_as_zero(memory_op, memory, 0)) return false;
    return clock_always_true(memory, 1) &&
           !(memory_op == OP_LAST_I && memory.operands[0]->value_kind == VK_REAL);
  }

  const SimProgram& p_;
  StepCode out_;
  /// By item number: its operation.
  std::vector<StepOp> op_;
  /// By item number: the slot of its value, or kUnplaced or kWalking.
  std::vector<uint32_t> slot_;
  /// By item number, for the memories: the slot of their state, and of
  /// its copy for the next states that read it.
  std::vector<uint32_t> state_;
  std::vector<uint32_t> kept_;
  /// By item number: the entry that computes it, or kUnplaced.
  std::vector<uint32_t> computed_at_;
  /// By item number: how often it is read (0, 1, or 2 for more); a
  /// comparison its `if` makes; an `->` read from its right operand's slot;
  /// a memory read from its operand's slot.
  std::vector<uint8_t> reads_;
  std::vector<uint8_t> fused_;
  std::vector<uint8_t> elided_;
  std::vector<uint8_t> aliased_;
  /// As deep as the longest chain: a deque grows without copying itself.
  std::deque<Frame> stack_;
  std::vector<Entry> entries_;
  uint32_t position_ = 0;
  std::vector<uint32_t> zeros_;
  size_t next_zero_ = 0;
};

}  // namespace

StepCode derive_step_code(const SimProgram& program) {
  return Deriver(program).derive();
}
