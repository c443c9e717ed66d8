#include "net/node_store.h"

#include <algorithm>

Operands NodeStore::operands(Exp* const* from, size_t count) {
  if (count == 0) return {};
  const size_t need = count + 1;
  Exp** array;
  if (need > kBlockSlots) {
    array = blocks_.emplace_back(new Exp*[need]).get();
  } else {
    if (need > left_) {
      cursor_ = blocks_.emplace_back(new Exp*[kBlockSlots]).get();
      left_ = kBlockSlots;
    }
    array = cursor_;
    cursor_ += need;
    left_ -= need;
  }
  std::copy(from, from + count, array + 1);
  return Operands(array, count);
}

void NodeStore::new_node_block() {
  next_node_ = node_blocks_.emplace_back(new Exp[kNodeBlock]).get();
  nodes_left_ = kNodeBlock;
}

void NodeStore::clear() {
  std::vector<std::unique_ptr<Exp[]>>().swap(node_blocks_);
  next_node_ = nullptr;
  nodes_left_ = 0;
  size_ = 0;
  std::vector<std::unique_ptr<Exp*[]>>().swap(blocks_);
  cursor_ = nullptr;
  left_ = 0;
}
