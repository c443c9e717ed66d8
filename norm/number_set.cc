#include "norm/number_set.h"

#include <bit>
#include <cstddef>

NumberSet::NumberSet(int bound) {
  size_t bits = bound > 0 ? static_cast<size_t>(bound) : 1;
  do {
    const size_t words = (bits + 63) / 64;
    levels_.emplace_back(words, 0);
    bits = words;
  } while (bits > 1);
}

void NumberSet::insert(int i) {
  size_t at = static_cast<size_t>(i);
  for (std::vector<uint64_t>& level : levels_) {
    uint64_t& word = level[at / 64];
    const bool was_empty = word == 0;
    word |= uint64_t{1} << (at % 64);
    if (!was_empty) return;
    at /= 64;
  }
}

void NumberSet::erase(int i) {
  size_t at = static_cast<size_t>(i);
  for (std::vector<uint64_t>& level : levels_) {
    uint64_t& word = level[at / 64];
    word &= ~(uint64_t{1} << (at % 64));
    if (word != 0) return;
    at /= 64;
  }
}

// Up the levels until a word holds something at or after the position,
// then down along the lowest set bits.
int NumberSet::next_after(int k) const {
  size_t at = static_cast<size_t>(k + 1);
  size_t l = 0;
  for (;; ++l) {
    if (l == levels_.size() || at / 64 >= levels_[l].size()) return -1;
    const uint64_t bits = levels_[l][at / 64] & (~uint64_t{0} << (at % 64));
    if (bits != 0) {
      at = at / 64 * 64 + static_cast<size_t>(std::countr_zero(bits));
      break;
    }
    at = at / 64 + 1;
  }
  while (l-- > 0) at = at * 64 + static_cast<size_t>(std::countr_zero(levels_[l][at]));
  return static_cast<int>(at);
}
