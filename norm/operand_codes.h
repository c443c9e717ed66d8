// Operands read once through references into compact numbers: a made node
// by the number it carries (its class_no at the time of reading), a leaf by
// its place among the leaves met. The partition compares and the
// representatives are rebuilt from these numbers without going back to the
// nodes, which lie scattered over the normal form.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "net/exp.h"

class NormNet;

class OperandCodes {
 public:
  /// The code of `operand` after through_ref. A leaf takes a code below 0
  /// the first time it is met; it carries the code in its class_no until
  /// `finish`.
  int code(NormNet& net, Exp* operand);
  /// Appends the codes of `node`'s operands as the next entry.
  void add(NormNet& net, const Exp* node);
  /// Appends an entry of `count` codes; the caller fills them.
  int* add(size_t count);
  /// Gives the leaves their class_no of 0 back; the codes stay valid.
  void finish();

  size_t entries() const { return begin_.size() - 1; }
  size_t size(size_t i) const { return begin_[i + 1] - begin_[i]; }
  const int* of(size_t i) const { return codes_.data() + begin_[i]; }
  /// The leaf of a code below 0.
  Exp* leaf(int code) const { return leaves_[-code - 1]; }
  void reserve(size_t entries, size_t codes);

 private:
  /// 32 bits: four billion operands would not fit in memory anyway.
  std::vector<uint32_t> begin_{0};
  std::vector<int> codes_;
  std::vector<Exp*> leaves_;
};
