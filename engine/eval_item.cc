#include "engine/eval_item.h"

#include <cstdio>
#include <vector>

#include "support/diagnostics.h"

namespace {

/// An item whose operands are being ensured, and the next one to visit.
struct Frame {
  EvalItem* item;
  int next;
};

/// Shared by every walk and kept between steps, so that stepping allocates
/// nothing once the deepest walk has been seen. Walks may nest (a `compute`
/// called directly ensures its operands), so each one only pops its own
/// frames, above the height it started at.
std::vector<Frame>& work_stack() {
  static std::vector<Frame> stack;
  return stack;
}

std::vector<EvalItem*>& reset_stack() {
  static std::vector<EvalItem*> stack;
  return stack;
}

/// The frames one walk pushes, popped with the walk on every way out. A
/// fatal report thrown by a `compute` would otherwise leave them below the
/// next walks for good: in a process that goes on (the fuzz targets), the
/// stack would grow with every run that ends so.
template <class Entry>
class WalkFrames {
 public:
  explicit WalkFrames(std::vector<Entry>& stack) : stack_(stack), base_(stack.size()) {}
  WalkFrames(const WalkFrames&) = delete;
  WalkFrames& operator=(const WalkFrames&) = delete;
  ~WalkFrames() { stack_.erase(stack_.begin() + base_, stack_.end()); }

  bool pending() const { return stack_.size() > base_; }

 private:
  std::vector<Entry>& stack_;
  const size_t base_;
};

}  // namespace

// Most items have one or two operands: a separate array would cost more
// than the item's own fields.
EvalItem::EvalItem(int n, int kind, EvalItem** room)
    : operands(n <= 2 ? few_ : room), n_operands(n), value_kind(static_cast<uint8_t>(kind)) {
  if (n > 2 && !room) internal_error("file 'eval_item':\nEvalItem : no room for %d operands\n", n);
}

EvalItem::~EvalItem() = default;

void EvalItem::compute(unsigned) {
  error("EvalItem::compute is only virtual\n");
}

void EvalItem::compute_next(unsigned) {
  error("EvalItem::compute_next only virtual\n");
}

void EvalItem::rewrite() {
  error("EvalItem::rewrite only virtual\n");
}

int EvalItem::is_bottom() {
  error("EvalItem::is_bottom only virtual\n");
}

int EvalItem::extern_type_name() {
  if (extern_type != 0) return extern_type;
  warning("EvalItem:extern_type_name: called on non extern type");
  return -1;
}

void EvalItem::ensure_operands(unsigned step) {
  for (int i = 0; i < n_operands; ++i) operands[i]->ensure(step);
}

// Nested compute calls would visit the operands depth first, in order, and
// combine an item once all of them are back. The loop below does the same:
// the stamp is set when an item is first reached, so an item met again
// while it is still on the stack reads the value it held before, exactly
// as the recursion would. When an item's operands are all stamped, its own
// `compute` finds every `ensure` already satisfied and only combines.
void EvalItem::ensure(unsigned step) {
  if (stamp == step) return;
  stamp = step;
  std::vector<Frame>& stack = work_stack();
  const WalkFrames walk(stack);
  stack.push_back({this, 0});
  while (walk.pending()) {
    Frame& top = stack.back();
    EvalItem* item = top.item;
    if (item->demands_operands && top.next < item->n_operands) {
      EvalItem* operand = item->operands[top.next++];
      if (operand->stamp != step) {
        operand->stamp = step;
        stack.push_back({operand, 0});
      }
      continue;
    }
    stack.pop_back();
    item->compute(step);
  }
}

void EvalItem::reset_walk() {
  if (stamp == 0) return;
  std::vector<EvalItem*>& stack = reset_stack();
  const WalkFrames walk(stack);
  stack.push_back(this);
  while (walk.pending()) {
    EvalItem* item = stack.back();
    stack.pop_back();
    if (item->stamp == 0) continue;
    item->status = ST_NIL;
    item->stamp = 0;
    item->reset();
    // Pushed last to first so that they are visited in operand order.
    for (int i = item->n_operands - 1; i >= 0; --i) {
      if (item->operands[i]->stamp != 0) stack.push_back(item->operands[i]);
    }
  }
}

void check_clock(const EvalItem& clock) {
  if (clock.status != 0) clock_takes_on_nil();
}

void clock_takes_on_nil() {
  fputs("clock takes on nil\n", stderr);
  end_process(1);
}
