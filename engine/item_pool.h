// The items of one program, made in large blocks rather than one by one:
// a million separate allocations would each pay the allocator's header and
// rounding, and scatter the items that the schedule's walk then visits in
// about the order they were made. An item owns nothing, its operands being
// in the pool too, so freeing the blocks frees the items without a visit.
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

  /// Makes an item of class `C`, numbered by its place among the items.
  template <class C, class... Args>
  C* make(Args&&... args) {
    static_assert(alignof(C) <= alignof(EvalItem), "allocate aligns for EvalItem");
    C* item = ::new (allocate(sizeof(C))) C(std::forward<Args>(args)...);
    item->number = static_cast<int>(items_.size());
    items_.push_back(item);
    if (keeping_) kept_.push_back(item);
    return item;
  }
  /// While one stands (and `on`), the items made outlast release_unkept;
  /// as it ends, the pool keeps as it did before.
  class Keeping {
   public:
    explicit Keeping(ItemPool& pool, bool on = true) : pool_(pool), was_(pool.keeping_) {
      pool_.keeping_ = was_ || on;
    }
    Keeping(const Keeping&) = delete;
    Keeping& operator=(const Keeping&) = delete;
    ~Keeping() { pool_.keeping_ = was_; }

   private:
    ItemPool& pool_;
    const bool was_;
  };

  /// Frees the room of every item but those made while keeping; items()
  /// then lists the kept ones.
  void release_unkept();
  bool released() const { return released_; }
  /// Room for the operands of an item that has more than two, cleared;
  /// null for fewer, which the item holds itself.
  EvalItem** operand_room(int n);

  /// Every item, in the order made. A deque, since a vector of a million
  /// would copy itself as it grows.
  const std::deque<EvalItem*>& items() const { return items_; }

 private:
  /// Blocks that items are cut from, in turn.
  struct Arena {
    std::vector<std::unique_ptr<std::byte[]>> blocks;
    std::byte* cursor = nullptr;
    size_t left = 0;
  };

  void* allocate(size_t bytes);

  /// The items that may be released, and the kept ones.
  Arena arenas_[2];
  std::deque<EvalItem*> items_;
  /// In the order made, as they are in items_.
  std::vector<EvalItem*> kept_;
  bool keeping_ = false;
  bool released_ = false;
};
