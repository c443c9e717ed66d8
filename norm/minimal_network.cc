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
  classes.relink();
  verbose(" done (%d -> %d nodes)\n", n_nodes, n_classes);
}

// All placeholders exist before any is filled, so representatives may
// refer to each other in any order, cycles through memories included.
void NormNet::rebuild() {
  class_reps.resize(n_classes);
  for (Exp*& rep : class_reps) rep = ctr.placeholder();
  for (int i = 0; i < n_classes; ++i) {
    Exp* r = class_lists[i]->node;
    type(r);
    Exp* rep = class_reps[i];
    ctr.update(rep, r);
    for (Exp*& o : rep->operands) {
      Exp* target = through_ref(o);
      o = target->class_no != 0 ? class_reps[target->class_no - 1] : target;
    }
    ctr.put_in_hash_tab(rep);
  }
}
