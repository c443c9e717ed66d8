// The node table of a normalised net: placeholders for the representatives
// of the minimal network, filled once, and a hash table they are entered in.
#pragma once

#include <array>
#include <deque>

#include "net/exp.h"

class Net;

class NetCtr {
 public:
  static constexpr int kBuckets = 5041;

  struct Cell {
    /// Cells from this one to the end of its chain.
    int length;
    Exp* node;
    /// The previous head of the bucket.
    Cell* next;
  };

  explicit NetCtr(Net* net) : net(net) {}
  NetCtr(const NetCtr&) = delete;
  NetCtr& operator=(const NetCtr&) = delete;

  /// A blank ERROR_n node owned by the net, to be filled by `update`.
  Exp* placeholder();
  /// Copies every field of `source` into the still blank `target`.
  void update(Exp* target, Exp* source);
  /// Enters an operator node in front of its bucket; returns the new cell.
  Cell* put_in_hash_tab(Exp* node);

  Net* net;

 private:
  static unsigned bucket(const Exp* node);

  std::array<Cell*, kBuckets> buckets_{};
  std::deque<Cell> cells_;
};
