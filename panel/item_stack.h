// The items of one form in creation order, owned here so that a window
// left half-built by a refused program frees what it made.
#pragma once

#include <memory>
#include <vector>

#include "panel/form_item.h"

class ItemStack {
 public:
  /// Takes `item`, which was placed below the current tail, as the new tail.
  template <class Item>
  Item* push(Item* item) {
    items_.emplace_back(item);
    return item;
  }
  /// Frees every item (their widgets are the toolkit's).
  void clear() { items_.clear(); }
  /// The last item pushed; null while the stack is empty.
  FormItem* tail() const { return items_.empty() ? nullptr : items_.back().get(); }

 private:
  std::vector<std::unique_ptr<FormItem>> items_;
};
