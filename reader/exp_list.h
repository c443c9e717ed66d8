// The reader's list of expressions (operands of tuples, nor and # and the
// arguments of calls). The head keeps the length and the last cell, so that
// appending stays constant-time even for very long tuples.
#pragma once

#include <vector>

struct Exp;

struct ExpList {
  /// Head only: the number of cells.
  int count;
  Exp* exp;
  ExpList* next;
  /// Head only: the last cell.
  ExpList* last;
};

/// A one-cell list.
ExpList* exp_list_one(Exp* e);
/// Links `b` behind `a`; the result owns both.
ExpList* exp_list_join(ExpList* a, ExpList* b);
/// The expressions in order; frees the cells.
std::vector<Exp*> exp_list_take(ExpList* list);
/// Frees the cells; the expressions belong to their net.
void exp_list_free(ExpList* list);
