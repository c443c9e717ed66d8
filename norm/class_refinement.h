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
#include <deque>
#include <utility>
#include <vector>

#include "norm/net_norm.h"
#include "norm/number_set.h"
#include "norm/operand_codes.h"

class ClassRefinement {
 public:
  /// Reads the net's made nodes, which carry their position + 1 as
  /// class_no (NormNet::read_made_nodes); `made` is consumed. Unless the
  /// net keeps its normal form, the nodes may go once it is made.
  explicit ClassRefinement(NormNet& net);
  /// Groups every class's members for the first time: to be called once,
  /// before any split.
  void form_first_groups();

  /// The first class after class `k` holding members of several
  /// signatures; 0 when there is none.
  int next_splittable(int k) const;
  /// Moves the members of class `k` whose signature differs from its first
  /// member's to a new class, numbered next.
  void split(int k);
  /// The classes, and when the net keeps its normal form, its class lists
  /// and the nodes' numbers as well. Ends the refinement.
  NormNet::Partition relink();

 private:
  /// Per member, by position in creation order: where it is.
  struct Member {
    int block;
    /// -1 while it is being regrouped.
    int group;
    /// Neighbours in the group, and in the block by position; -1 = none.
    int group_prev, group_next;
    int list_prev, list_next;
  };
  /// Per member, by position, with one more after the last that only ends
  /// the last member's operands and parents: what a signature or a
  /// regrouping reads of it, apart from the links a move rewrites.
  struct Shape {
    /// Where its operands start in codes_ and its parents in parents_;
    /// the next member's start ends them.
    uint32_t operands, parents;
    /// Where the kind compares it; 0 otherwise.
    int param;
    uint8_t kind;
    /// Met among the parents being regrouped.
    bool met;
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
  /// A signature met while grouping: the high half of its hash, and its group.
  struct Slot {
    uint32_t check;
    int group;
  };

  /// Each member's kind and parameter.
  void read_shapes();
  void start_by_kind();
  /// Codes the operands and indexes the parents.
  void read_operands();
  int operand_value(int code) const;
  const int* operands(int i) const { return codes_.data() + shapes_[i].operands; }
  size_t arity(int i) const { return shapes_[i + 1].operands - shapes_[i].operands; }
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
  /// The made nodes' cells, oldest first: a member's position is its index.
  std::deque<NormNet::Cell>& cells_;
  /// Codes the operands as they are read, and takes the first members'
  /// codes at the end.
  OperandCodes first_codes_;
  /// The operands after through_ref: a member's position + 1 or, below 0,
  /// a leaf.
  std::vector<int> codes_;
  /// The members with a member among their operands, each once.
  std::vector<int> parents_;
  std::vector<Member> members_;
  std::vector<Shape> shapes_;
  std::vector<Group> groups_;
  std::vector<int> free_groups_;
  std::vector<Block> blocks_;
  /// By class number, from 1 at index 0.
  std::vector<int> block_of_class_;
  /// The classes of several groups.
  NumberSet splittable_;
  /// Scratch space of split and form_groups, kept to spare allocations.
  std::vector<int> moving_groups_, moved_, parents_moved_;
  std::vector<Slot> slots_;
};
