// The items of one form in creation order, owned here so that a window
// left half-built by a refused program frees what it made.
#pragma once

#include <functional>
#include <memory>
#include <utility>
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
  /// Runs `make`, which pushes items, and keeps it to make them again.
  void add(std::function<void()> make) {
    make();
    makers_.push_back(std::move(make));
  }
  /// Every item made again, in order, once their widgets are gone with
  /// their form (the widgets themselves are the toolkit's).
  void remake() {
    items_.clear();
    for (const auto& make : makers_) make();
  }
  /// The last item pushed; null while the stack is empty.
  FormItem* tail() const { return items_.empty() ? nullptr : items_.back().get(); }

 private:
  std::vector<std::unique_ptr<FormItem>> items_;
  std::vector<std::function<void()>> makers_;
};
