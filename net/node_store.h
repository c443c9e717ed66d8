// The nodes made in one phase of loading and their operand arrays, kept
// together so that a phase's nodes can be let go of at once when nothing
// needs them any more.
#pragma once

#include <deque>
#include <memory>
#include <vector>

#include "net/exp.h"

class NodeStore {
 public:
  NodeStore() = default;
  NodeStore(const NodeStore&) = delete;
  NodeStore& operator=(const NodeStore&) = delete;

  /// Takes the node; its address stays valid until `clear`.
  Exp* add(Exp&& e) { return &nodes_.emplace_back(std::move(e)); }
  /// A fresh array of `count` operands, copied from `from`.
  Operands operands(Exp* const* from, size_t count);
  size_t size() const { return nodes_.size(); }
  /// Frees every node and array of the store.
  void clear();

 private:
  static constexpr size_t kBlockSlots = 4096;

  std::deque<Exp> nodes_;
  /// Operand arrays are cut from blocks; an array larger than a block gets
  /// a block of its own.
  std::vector<std::unique_ptr<Exp*[]>> blocks_;
  Exp** cursor_ = nullptr;
  size_t left_ = 0;
};
