#include "norm/class_refinement.h"

#include <algorithm>
#include <climits>

ClassRefinement::ClassRefinement(NormNet& net) : net_(net) {
  for (int c = 0; c < net_.n_classes; ++c) {
    head_.push_back(static_cast<int>(cells_.size()));
    int label = 0;
    for (NormNet::Cell* cell = net_.class_lists[c]; cell; cell = cell->next) {
      const int i = static_cast<int>(cells_.size());
      index_[cell->node] = i;
      cells_.push_back(cell);
      prev_.push_back(label == 0 ? -1 : i - 1);
      next_.push_back(cell->next ? i + 1 : -1);
      label_.push_back(label++);
    }
  }
  parents_.resize(cells_.size());
  differs_.assign(cells_.size(), 0);
  for (size_t i = 0; i < cells_.size(); ++i) {
    for (Exp* o : cells_[i]->node->operands) {
      auto at = index_.find(net_.through_ref(o));
      if (at == index_.end()) continue;
      std::vector<int>& parents = parents_[at->second];
      if (parents.empty() || parents.back() != static_cast<int>(i)) {
        parents.push_back(static_cast<int>(i));
      }
    }
  }
  for (int c = 1; c <= net_.n_classes; ++c) recheck_class(c);
}

int ClassRefinement::next_splittable(int k) const {
  auto at = differing_.lower_bound({k + 1, INT_MIN, INT_MIN});
  return at == differing_.end() ? 0 : std::get<0>(*at);
}

void ClassRefinement::set_differs(int i, bool differs) {
  if (differs_[i] == differs) return;
  differs_[i] = differs;
  const auto entry = std::make_tuple(cells_[i]->node->class_no, label_[i], i);
  if (differs) {
    differing_.insert(entry);
  } else {
    differing_.erase(entry);
  }
}

void ClassRefinement::recheck(int i) {
  Exp* node = cells_[i]->node;
  const int c = node->class_no;
  const int first = head_[c - 1];
  set_differs(i, i != first && !net_.equivalent(node, cells_[first]->node, c));
}

void ClassRefinement::recheck_class(int c) {
  for (int i = head_[c - 1]; i != -1; i = next_[i]) recheck(i);
}

void ClassRefinement::split(int k) {
  // Taken out of the set in list order; the new list runs the other way.
  std::vector<int> moved;
  auto from = differing_.lower_bound({k, INT_MIN, INT_MIN});
  auto to = differing_.lower_bound({k + 1, INT_MIN, INT_MIN});
  for (auto at = from; at != to; ++at) moved.push_back(std::get<2>(*at));
  differing_.erase(from, to);
  const int fresh = ++net_.n_classes;
  head_.push_back(moved.back());
  int label = 0;
  for (auto it = moved.rbegin(); it != moved.rend(); ++it) {
    const int i = *it;
    differs_[i] = 0;
    if (prev_[i] != -1) next_[prev_[i]] = next_[i];
    if (next_[i] != -1) prev_[next_[i]] = prev_[i];
    prev_[i] = it == moved.rbegin() ? -1 : *(it - 1);
    next_[i] = it + 1 == moved.rend() ? -1 : *(it + 1);
    label_[i] = label++;
    cells_[i]->node->class_no = fresh;
  }
  recheck_class(fresh);
  // A member whose first member's operand moved is compared afresh with
  // the whole class; any other is compared alone.
  std::vector<int> classes;
  for (int j : moved) {
    for (int i : parents_[j]) {
      const int c = cells_[i]->node->class_no;
      if (head_[c - 1] == i) {
        classes.push_back(c);
      } else {
        recheck(i);
      }
    }
  }
  std::sort(classes.begin(), classes.end());
  classes.erase(std::unique(classes.begin(), classes.end()), classes.end());
  for (int c : classes) recheck_class(c);
}

void ClassRefinement::relink() {
  for (int c = 1; c <= net_.n_classes; ++c) {
    const int first = head_[c - 1];
    net_.class_lists[c - 1] = cells_[first];
    for (int i = first; i != -1; i = next_[i]) {
      cells_[i]->next = next_[i] == -1 ? nullptr : cells_[next_[i]];
    }
  }
}
