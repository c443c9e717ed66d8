#include <array>

#include "norm/class_refinement.h"
#include "norm/net_norm.h"
#include "support/diagnostics.h"

// The partition reuses the cells of `made`: they are relinked into class
// lists, so `made` is consumed by whichever partition runs.

void NormNet::initial_partition() {
  n_classes = 0;
  if (!made) return;
  class_lists.assign(n_nodes, nullptr);
  std::array<int, N_OPKINDS> class_of_kind{};
  for (Cell* cell = made; cell;) {
    Cell* next = cell->next;
    int& k = class_of_kind[through_ref(cell->node)->op];
    if (k == 0) {
      cell->next = nullptr;
      class_lists[n_classes] = cell;
      k = ++n_classes;
    } else {
      cell->next = class_lists[k - 1];
      class_lists[k - 1] = cell;
    }
    cell->node->class_no = k;
    cell = next;
  }
}

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
  initial_partition();
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

bool NormNet::same_shape(Exp* a, Exp* b) {
  a = through_ref(a);
  b = through_ref(b);
  if (a->op != b->op || a->arity() != b->arity()) return false;
  return op_arity(a->op) != AR_PARAM || a->param == b->param;
}

bool NormNet::equivalent(Exp* a, Exp* b, int k) {
  if (!same_shape(a, b)) return false;
  a = through_ref(a);
  b = through_ref(b);
  if (op_commutes(a->op)) {
    Exp* a0 = a->operand(0);
    Exp* a1 = a->operand(1);
    Exp* b0 = b->operand(0);
    Exp* b1 = b->operand(1);
    return (same_class(a0, b0, k) && same_class(a1, b1, k)) ||
           (same_class(a1, b0, k) && same_class(a0, b1, k));
  }
  for (int i = 0; i < a->arity(); ++i) {
    if (!same_class(a->operand(i), b->operand(i), k)) return false;
  }
  return true;
}

// Nodes moved out of class k by the split in progress still count as
// members of k until the split is over.
bool NormNet::same_class(Exp* x, Exp* y, int k) {
  x = through_ref(x);
  y = through_ref(y);
  if (x->class_no == 0 || y->class_no == 0) return x == y;
  const int cx = x->class_no > n_classes ? k : x->class_no;
  const int cy = y->class_no > n_classes ? k : y->class_no;
  return cx == cy;
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
