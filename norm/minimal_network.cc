#include <malloc.h>

#include "norm/class_refinement.h"
#include "norm/net_norm.h"
#include "support/diagnostics.h"

// Positions are the made nodes' places in creation order; `made` lists
// them newest first.

void NormNet::read_made_nodes() {
  const size_t n = cells_.size();
  heads_.clear();
  heads_.reserve(n);
  for (size_t i = 0; i < n; ++i) {
    Exp* e = cells_[i].node;
    // A representative takes its first member's type: all are known
    // before the members go.
    type(e);
    heads_.push_back(NodeHead{e->type, e->clock, e->ident, e->param, e->op});
    e->class_no = static_cast<int>(i) + 1;
  }
  final_codes_.assign(held_def.size(), 0);
  for (IndexList* names : {outputs, locals, asserts}) {
    for (IndexList* n = names; n; n = n->next) {
      if (held_def[n->value]) final_codes_[n->value] = final_leaves_.code(*this, held_def[n->value]);
    }
  }
  final_leaves_.finish();
}

// One class per node, numbered newest first, as `made` lists them. The
// partition reuses the cells of `made`: they become the class lists.
NormNet::Partition NormNet::identity_partition() {
  const int n = static_cast<int>(cells_.size());
  Partition p;
  n_classes = n;
  p.firsts.resize(n);
  p.class_of.resize(n);
  size_t total = 0;
  for (int i = 0; i < n; ++i) {
    p.firsts[n - 1 - i] = i;
    p.class_of[i] = n - i;
    total += cells_[i].node->operands.size();
  }
  p.operands.reserve(n, total);
  for (int c = 0; c < n; ++c) p.operands.add(*this, cells_[p.firsts[c]].node);
  p.operands.finish();
  if (!keep_normal_form_) {
    release_normal_form();
    return p;
  }
  class_lists.assign(n, nullptr);
  for (int c = 0; c < n; ++c) {
    Cell& cell = cells_[p.firsts[c]];
    cell.next = nullptr;
    cell.node->class_no = c + 1;
    class_lists[c] = &cell;
  }
  made = nullptr;
  return p;
}

// Sweeps over the classes until none splits; classes formed during a sweep
// are visited by the same sweep. Everything that differs from the first
// member of a class leaves it together; later sweeps split the leavers
// among themselves.
NormNet::Partition NormNet::minimal_network() {
  verbose("start minimal network generation .");
  ClassRefinement classes(*this);
  // The refinement has read all it needs: the normal form would otherwise
  // stand beside it for nothing, and its pages serve the groups.
  if (!keep_normal_form_) {
    release_normal_form();
    malloc_trim(0);
  }
  classes.form_first_groups();
  for (bool changed = true; changed;) {
    changed = false;
    for (int k = classes.next_splittable(0); k; k = classes.next_splittable(k)) {
      classes.split(k);
      changed = true;
      spin(100);
    }
    if (changed) verbose(".");
  }
  Partition p = classes.relink();
  verbose(" done (%d -> %d nodes)\n", n_nodes, n_classes);
  return p;
}

// All placeholders exist before any is filled, so representatives may
// refer to each other in any order, cycles through memories included.
void NormNet::rebuild(const Partition& partition) {
  if (partition.operands.entries() != static_cast<size_t>(n_classes)) {
    internal_error("file 'net_norm':\nNormNet::rebuild : no partition to rebuild from\n");
  }
  for (int& code : final_codes_) code = partition.class_code(code);
  class_reps.resize(n_classes);
  for (Exp*& rep : class_reps) rep = ctr.placeholder();
  std::vector<Exp*> operands;
  for (int i = 0; i < n_classes; ++i) {
    const NodeHead& head = heads_[partition.firsts[i]];
    const int* codes = partition.operands.of(i);
    operands.clear();
    for (size_t j = 0, count = partition.operands.size(i); j < count; ++j) {
      const int code = partition.class_code(codes[j]);
      operands.push_back(code > 0 ? class_reps[code - 1] : partition.operands.leaf(code));
    }
    Exp filled;
    filled.type = head.type;
    filled.operands = new_operands(operands);
    filled.clock = head.clock;
    filled.class_no = i + 1;
    filled.ident = head.ident;
    filled.param = head.param;
    filled.op = head.op;
    ctr.update(class_reps[i], filled);
    ctr.put_in_hash_tab(class_reps[i]);
  }
  std::vector<NodeHead>().swap(heads_);
}
