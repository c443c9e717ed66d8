#include "norm/class_refinement.h"
#include "norm/net_norm.h"
#include "support/diagnostics.h"

// The partition reuses the cells of `made`: they are relinked into class
// lists, so `made` is consumed by whichever partition runs.

void NormNet::identity_partition() {
  n_classes = 0;
  if (!made) return;
  class_lists.assign(n_nodes, nullptr);
  for (Cell* cell = made; cell;) {
    Cell* next = cell->next;
    cell->next = nullptr;
    class_lists[n_classes] = cell;
    cell->node->class_no = ++n_classes;
    cell = next;
  }
  size_t total = 0;
  for (int c = 0; c < n_classes; ++c) total += class_lists[c]->node->operands.size();
  rep_operands_.reserve(n_classes, total);
  for (int c = 0; c < n_classes; ++c) rep_operands_.add(*this, class_lists[c]->node);
  rep_operands_.finish();
}

// Sweeps over the classes until none splits; classes formed during a sweep
// are visited by the same sweep. Everything that differs from the first
// member of a class leaves it together; later sweeps split the leavers
// among themselves.
void NormNet::minimal_network() {
  verbose("start minimal network generation .");
  ClassRefinement classes(*this);
  for (bool changed = true; changed;) {
    changed = false;
    for (int k = classes.next_splittable(0); k; k = classes.next_splittable(k)) {
      classes.split(k);
      changed = true;
      spin(100);
    }
    if (changed) verbose(".");
  }
  rep_operands_ = classes.relink();
  verbose(" done (%d -> %d nodes)\n", n_nodes, n_classes);
}

// All placeholders exist before any is filled, so representatives may
// refer to each other in any order, cycles through memories included.
void NormNet::rebuild() {
  if (rep_operands_.entries() != static_cast<size_t>(n_classes)) {
    internal_error("file 'net_norm':\nNormNet::rebuild : no partition to rebuild from\n");
  }
  class_reps.resize(n_classes);
  for (Exp*& rep : class_reps) rep = ctr.placeholder();
  for (int i = 0; i < n_classes; ++i) {
    Exp* r = class_lists[i]->node;
    type(r);
    Exp* rep = class_reps[i];
    ctr.update(rep, r);
    const int* codes = rep_operands_.of(i);
    for (Exp*& o : rep->operands) {
      const int code = *codes++;
      o = code > 0 ? class_reps[code - 1] : rep_operands_.leaf(code);
    }
    ctr.put_in_hash_tab(rep);
  }
  rep_operands_ = OperandCodes();
}
