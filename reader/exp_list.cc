#include "reader/exp_list.h"

ExpList* exp_list_one(Exp* e) {
  ExpList* cell = new ExpList{1, e, nullptr, nullptr};
  cell->last = cell;
  return cell;
}

ExpList* exp_list_join(ExpList* a, ExpList* b) {
  a->last->next = b;
  a->last = b->last;
  a->count += b->count;
  return a;
}

std::vector<Exp*> exp_list_take(ExpList* list) {
  std::vector<Exp*> exps;
  exps.reserve(list->count);
  for (ExpList* cell = list; cell; cell = cell->next) exps.push_back(cell->exp);
  exp_list_free(list);
  return exps;
}

void exp_list_free(ExpList* list) {
  while (list) {
    ExpList* next = list->next;
    delete list;
    list = next;
  }
}
