// The lists a parse has made and not yet passed on: those the parser's
// value stack holds between the rule that makes a list and the rule that
// takes it. The generated parser frees nothing on its stack when a fatal
// report unwinds through it, so the parse owns them instead and frees
// those still held when it ends, however it ends.
#pragma once

#include <algorithm>
#include <vector>

#include "reader/exp_list.h"
#include "support/index_list.h"

class HeldLists {
 public:
  HeldLists() = default;
  HeldLists(const HeldLists&) = delete;
  HeldLists& operator=(const HeldLists&) = delete;
  ~HeldLists() {
    for (IndexList* names : names_) delete names;
    for (ExpList* list : lists_) exp_list_free(list);
  }

  /// Holds a list just made; returns it.
  IndexList* keep(IndexList* names) { return add(names_, names); }
  ExpList* keep(ExpList* list) { return add(lists_, list); }
  /// Lets go of a held list for the rule that takes it; returns it.
  IndexList* pass(IndexList* names) { return remove(names_, names); }
  ExpList* pass(ExpList* list) { return remove(lists_, list); }

 private:
  template <class List>
  static List* add(std::vector<List*>& held, List* list) {
    held.push_back(list);
    return list;
  }
  // A list is taken by a rule soon after it was made: searched from the
  // newest.
  template <class List>
  static List* remove(std::vector<List*>& held, List* list) {
    held.erase(std::find(held.rbegin(), held.rend(), list).base() - 1);
    return list;
  }

  std::vector<IndexList*> names_;
  std::vector<ExpList*> lists_;
};
