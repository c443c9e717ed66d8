// The items of one program, made in large blocks rather than one by one:
// a million separate allocations would each pay the allocator's header and
// rounding, and scatter the items that the schedule's walk then visits in
// about the order they were made.
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "engine/eval_item.h"

class ItemPool {
 public:
  ItemPool() = default;
  ItemPool(const ItemPool&) = delete;
  ItemPool& operator=(const ItemPool&) = delete;
  /// Destroys every item made.
  ~ItemPool();

  /// Makes an item of class `C`, numbered by its place among the items.
  template <class C, class... Args>
  C* make(Args&&... args) {
    static_assert(alignof(C) <= alignof(EvalItem), "allocate aligns for EvalItem");
    C* item = ::new (allocate(sizeof(C))) C(std::forward<Args>(args)...);
    item->number = static_cast<int>(items_.size());
    items_.push_back(item);
    return item;
  }
  /// Room for the operands of an item that has more than two, cleared;
  /// null for fewer, which the item holds itself.
  EvalItem** operand_room(int n);

  /// Every item, in the order made. A deque, since a vector of a million
  /// would copy itself as it grows.
  const std::deque<EvalItem*>& items() const { return items_; }

 private:
  void* allocate(size_t bytes);

  std::vector<std::unique_ptr<std::byte[]>> blocks_;
  std::byte* cursor_ = nullptr;
  size_t left_ = 0;
  std::deque<EvalItem*> items_;
};
