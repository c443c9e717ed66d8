// A set of numbers below a bound fixed at construction, with the next
// member after any number found in a few word operations: a bitmap, and
// above it a bitmap of its non-zero words, and so on up to one word.
#pragma once

#include <cstdint>
#include <vector>

class NumberSet {
 public:
  explicit NumberSet(int bound);

  void insert(int i);
  void erase(int i);
  /// The smallest member above `k` (k >= -1), or -1 when there is none.
  int next_after(int k) const;

 private:
  /// levels_[0] holds the members; bit w of levels_[l + 1] tells whether
  /// word w of levels_[l] is non-zero.
  std::vector<std::vector<uint64_t>> levels_;
};
