// The splitting of the minimal network's classes: O(m log n) regroupings
// for m operands, and a sort of each moved side. The classes come out numbered, ordered and headed exactly as by
// the sweep that compares every member of a class with its first member and
// moves all that differ, in reverse order, to one new class.
//
// Members are grouped by signature: their kind, arity, parameter and the
// classes of their operands (an unordered pair for the kinds that commute).
// A class splits when it holds several groups; the first member's group
// stays. Of the two sides only the smaller one is moved to a fresh block, so
// a member moves O(log n) times, and only the parents of moved members get a
// new signature. A class's list is its members in creation order, read
// forwards or backwards: a split keeps the order of those that stay and
// reverses that of those that leave, so each block needs only a direction,
// and the side that is not moved keeps its list where it is.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "norm/net_norm.h"
#include "norm/number_set.h"

class ClassRefinement {
 public:
  /// Partitions the net's made nodes by kind; `made` is consumed.
  explicit ClassRefinement(NormNet& net);

  /// The first class after class `k` holding members of several
  /// signatures; 0 when there is none.
  int next_splittable(int k) const;
  /// Moves the members of class `k` whose signature differs from its first
  /// member's to a new class, numbered next.
  void split(int k);
  /// Writes the classes back as the net's class lists and numbers.
  void relink();

 private:
  /// Per member, by position in creation order.
  struct Member {
    int block;
    int group;
    /// Neighbours in the group, and in the block by position; -1 = none.
    int group_prev, group_next;
    int list_prev, list_next;
  };
  struct Group {
    int block;
    int size;
    int head;
    /// Neighbours among the block's groups; -1 = none.
    int prev, next;
  };
  struct Block {
    /// The class number it carries.
    int number;
    /// Whether the class's list runs by increasing position.
    bool forwards;
    /// Lowest and highest positions; -1 when empty.
    int head, tail;
    int size;
    int groups;
    int n_groups;
  };

  void start_by_kind();
  /// Codes the operands and indexes the parents.
  void read_operands();
  int operand_value(int code) const;
  /// The operands of a kind that commutes, as an unordered pair.
  std::pair<int, int> sorted_pair(const int* codes) const;
  uint64_t signature_hash(int i) const;
  bool same_signature(int x, int y) const;
  /// Groups members that have none by signature.
  void form_groups(const std::vector<int>& members);
  void join_group(int i, int g);
  void leave_group(int i);
  int new_group(int block);
  void link_group(int g, int block);
  void unlink_group(int g);
  int new_block();
  /// Moves whole groups from block `from` to block `to`, which is empty;
  /// returns the moved members by position.
  const std::vector<int>& move_groups(const std::vector<int>& groups, int from, int to);
  /// Regroups the members that have one of `moved` among their operands.
  void regroup_parents(const std::vector<int>& moved);

  NormNet& net_;
  std::vector<NormNet::Cell*> cells_;
  /// Per member: its kind, and its parameter where the kind compares it.
  std::vector<OpKind> kinds_;
  std::vector<int> params_;
  /// Per member, from operand_begin_[i]: its operands after through_ref,
  /// a member's position or, below 0, a leaf's own code.
  std::vector<int> operand_begin_, operands_;
  /// Per member, from parent_begin_[i]: the members with it among their
  /// operands, each once.
  std::vector<int> parent_begin_, parents_;
  std::vector<Member> members_;
  std::vector<char> touched_;
  std::vector<Group> groups_;
  std::vector<int> free_groups_;
  std::vector<Block> blocks_;
  /// By class number, from 1 at index 0.
  std::vector<int> block_of_class_;
  /// The classes of several groups.
  NumberSet splittable_;
  /// Scratch space of split and form_groups, kept to spare allocations.
  std::vector<int> moving_groups_, moved_, parents_moved_;
  struct Slot {
    uint64_t hash;
    int group;
  };
  std::vector<Slot> slots_;
};
