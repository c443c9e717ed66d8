// The normalised network: every output, local and assertion rewritten
// without clocks or temporal operators other than memories (LAST_n) and
// first-instant flags (INIT_n), then reduced to one node per class of
// equivalent nodes.
#pragma once

#include <deque>
#include <span>
#include <unordered_map>
#include <vector>

#include "net/net.h"
#include "net/netctr.h"
#include "norm/load_options.h"
#include "norm/operand_codes.h"

class NormNet : public Net {
 public:
  /// One node made by `make`; the partition relinks these cells into classes.
  struct Cell {
    Exp* node;
    Cell* next;
  };
  /// What a representative takes from its class's first member besides
  /// its operands.
  struct NodeHead {
    QvType* type;
    int clock, ident, param;
    OpKind op;
  };
  /// The classes as the rebuild needs them, by class from 1 at index 0.
  struct Partition {
    /// The operands of each class's first member, coded as read: a made
    /// node by its position + 1, or below 0 a leaf.
    OperandCodes operands;
    /// Each class's first member, and each member's class, by position
    /// among the made nodes.
    std::vector<int> firsts;
    std::vector<int> class_of;

    /// A code as read, with a made node's class in place of its position.
    int class_code(int code) const { return code > 0 ? class_of[code - 1] : code; }
  };

  NormNet(SymbolTable* strings, const LoadOptions& options);

  /// Normalises everything, then partitions and rebuilds the representatives.
  void build();
  /// Whether the normal form stays once the partition has read it.
  bool keeps_normal_form() const { return keep_normal_form_; }
  void normalise_all();
  void normalise(int name);
  /// The condition that is true exactly when clock `clock` is present.
  Exp* activation(int clock);
  Exp* first_instant(int clock);

  /// A fresh counted node, or a simpler equivalent when `bool_opt` is set.
  /// The operands are read, not kept: a view of the caller's array will do.
  Exp* make(OpKind kind, std::span<Exp* const> operands, int param = 0);
  Exp* make(OpKind kind, Exp* a, int param = 0) { return make(kind, {&a, 1}, param); }
  Exp* make(OpKind kind, Exp* a, Exp* b) {
    Exp* const operands[] = {a, b};
    return make(kind, operands);
  }
  Exp* make(OpKind kind, Exp* a, Exp* b, Exp* c) {
    Exp* const operands[] = {a, b, c};
    return make(kind, operands);
  }

  /// Follows references to outputs and locals to the normalised definition.
  Exp* through_ref(Exp* e);
  /// The node the evaluation graph uses for a name.
  Exp* final_exp(int name);
  /// Frees the normalised nodes and the tables that lead from names to
  /// them, leaving the representatives and the leaves: for a caller that
  /// has taken the final nodes and wants no dump of the normal form.
  void release_normal_form();
  /// Frees the representatives too, once the caller has made of them all
  /// it needs: only the leaves and the tables of names stay; final_exp is
  /// then no more.
  void release_final_nodes();
  void print();

  // Minimal network.
  /// An existing node equal to the requested one, or null.
  Exp* bool_simplify(OpKind kind, std::span<Exp* const> operands);
  /// Numbers the made nodes by position from 1 and notes what the rebuild
  /// and final_exp take from them, so that the normal form can go before.
  void read_made_nodes();
  Partition identity_partition();
  Partition minimal_network();
  void rebuild(const Partition& partition);
  void print_classes();
  void print_class(Exp* node);

  /// 0 to 2: minimal network; 3: one class per node.
  int mode;
  NetCtr ctr{this};
  /// By clock name; programs have few clocks and many names.
  std::unordered_map<int, Exp*> init_memo;
  std::unordered_map<int, Exp*> activation_memo;
  std::vector<Exp*> xdef;
  std::vector<Exp*> held_def;
  /// Newest first.
  Cell* made = nullptr;
  /// The cells of `made`, oldest first.
  std::deque<Cell>& made_cells() { return cells_; }
  int n_nodes = 0;
  int bool_opt;
  int n_requests = 0;
  std::vector<Cell*> class_lists;
  std::vector<Exp*> class_reps;
  int n_classes = 0;

 private:
  void normalise_group(IndexList* names);
  void check_references(IndexList* names);
  /// Marks a name as being walked; true when it already was (a cycle).
  bool enter_walk(int name);
  void leave_walk(const std::vector<int>& names);
  /// Stops the process when the normal form was released.
  void check_normal_form(const char* operation) const;

  std::deque<Cell> cells_;
  /// Every made node's head, by position.
  std::vector<NodeHead> heads_;
  /// By name, what the final node of a normalised name is: from
  /// read_made_nodes a made node's position + 1, from the rebuild its
  /// class; below 0 a leaf of final_leaves_; 0 for a name not normalised.
  std::vector<int> final_codes_;
  OperandCodes final_leaves_;
  bool keep_normal_form_;
  /// Bound on made_size() while normalising; 0 = none.
  size_t size_budget_ = 0;
  /// The name being normalised, for the message when the bound is passed.
  int normalising_ = 0;
  /// through_ref's answer per output or local, once known.
  std::vector<Exp*> resolved_;
  /// Names on the chain being walked by through_ref or activation.
  std::vector<char> on_walk_;
  /// The nodes made by normalising, and the representatives.
  NodeStore normal_;
  NodeStore reps_;
  bool released_ = false;
};

namespace net_norm {

/// The normal form of an expression; references stay references.
Exp* Ximpl(NormNet& net, Exp* e);

}  // namespace net_norm
