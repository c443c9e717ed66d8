// The splitting of the minimal network's classes, kept incremental: a
// class is split only when it holds a member that differs from its first
// one, and a member is compared again only when the class of one of its
// operands changes. The classes come out numbered and ordered exactly as
// by comparing every member of every class on every sweep, which costs the
// square of the nodes on a chain a hundred thousand nodes long.
#pragma once

#include <set>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "norm/net_norm.h"

class ClassRefinement {
 public:
  /// Takes over the classes `net.initial_partition()` made.
  explicit ClassRefinement(NormNet& net);

  /// The first class after class `k` holding a member that differs from
  /// the class's first member; 0 when there is none.
  int next_splittable(int k) const;
  /// Moves the differing members of class `k` to a new class, in reverse
  /// order, as NormNet::minimal_network has always done.
  void split(int k);
  /// Writes the classes back as the net's class lists.
  void relink();

 private:
  /// Compares member `i` with the first member of its class again.
  void recheck(int i);
  void recheck_class(int c);
  void set_differs(int i, bool differs);

  NormNet& net_;
  std::vector<NormNet::Cell*> cells_;
  std::unordered_map<const Exp*, int> index_;
  /// Per member: the members with it among their operands.
  std::vector<std::vector<int>> parents_;
  /// Per member: neighbours in its class's list (-1 = none) and a number
  /// that grows along the list.
  std::vector<int> prev_, next_, label_;
  std::vector<char> differs_;
  /// Per class, from 0: the first member.
  std::vector<int> head_;
  /// The differing members as (class, label, member): by class, then in
  /// list order.
  std::set<std::tuple<int, int, int>> differing_;
};
