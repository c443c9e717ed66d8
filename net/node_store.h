// The nodes made in one phase of loading and their operand arrays, kept
// together so that a phase's nodes can be let go of at once when nothing
// needs them any more.
#pragma once

#include <memory>
#include <vector>

#include "net/exp.h"

class NodeStore {
 public:
  NodeStore() = default;
  NodeStore(const NodeStore&) = delete;
  NodeStore& operator=(const NodeStore&) = delete;

  /// Takes the node; its address stays valid until `clear`.
  Exp* add(Exp&& e) {
    if (nodes_left_ == 0) new_node_block();
    --nodes_left_;
    ++size_;
    Exp* node = next_node_++;
    *node = std::move(e);
    return node;
  }
  /// A fresh array of `count` operands, copied from `from`.
  Operands operands(Exp* const* from, size_t count);
  size_t size() const { return size_; }
  /// Frees every node and array of the store.
  void clear();

 private:
  static constexpr size_t kBlockSlots = 4096;
  /// Nodes come in blocks, a call to the allocator per block rather than
  /// per few nodes.
  static constexpr size_t kNodeBlock = 2048;

  void new_node_block();

  std::vector<std::unique_ptr<Exp[]>> node_blocks_;
  Exp* next_node_ = nullptr;
  size_t nodes_left_ = 0;
  size_t size_ = 0;
  /// Operand arrays are cut from blocks; an array larger than a block gets
  /// a block of its own.
  std::vector<std::unique_ptr<Exp*[]>> blocks_;
  Exp** cursor_ = nullptr;
  size_t left_ = 0;
};
