// The node table of a normalised net: placeholders for the representatives
// of the minimal network, filled once, and a hash table they are entered in.
#pragma once

#include <array>

#include "net/exp.h"

class Net;

class NetCtr {
 public:
  static constexpr int kBuckets = 5041;

  /// A node as entered in front of its bucket's chain.
  struct Cell {
    /// Entries from this one to the end of its chain.
    int length;
    Exp* node;
    /// The node entered before it in the same bucket; null for the first.
    Exp* next;
  };

  explicit NetCtr(Net* net) : net(net) {}
  NetCtr(const NetCtr&) = delete;
  NetCtr& operator=(const NetCtr&) = delete;

  /// A blank ERROR_n node owned by the net, to be filled by `update`.
  Exp* placeholder();
  /// Fills the still blank `target` with `filled`, operands as they are.
  void update(Exp* target, const Exp& filled);
  /// Enters an operator node in front of its bucket; returns its cell.
  Cell put_in_hash_tab(Exp* node);

  Net* net;

 private:
  static unsigned bucket(const Exp* node);

  // Nobody looks nodes up or walks a chain, so each bucket keeps only its
  // head: with a million representatives, cells would cost megabytes for
  // nothing.
  std::array<Cell, kBuckets> heads_{};
};
