#include "net/exp.h"

#include <deque>
#include <utility>

#include "support/diagnostics.h"

int new_pass_key() {
  // Keys only grow, so a traversal never has to clear the marks of older ones.
  static int last_key = 0;
  return ++last_key;
}

MarkList& MarkList::operator=(const MarkList& other) {
  if (this == &other) return *this;
  clear();
  Mark** tail = &head_;
  for (const Mark* m = other.head_; m; m = m->next) {
    *tail = new Mark(m->key, m->value, nullptr);
    tail = &(*tail)->next;
  }
  return *this;
}

void MarkList::clear() {
  while (head_) delete std::exchange(head_, head_->next);
}

std::intptr_t MarkList::get(int key) const {
  for (const Mark* m = head_; m && m->key >= key; m = m->next) {
    if (m->key == key) return m->value;
  }
  return 0;
}

void MarkList::set(int key, std::intptr_t value) {
  Mark** at = &head_;
  while (*at && (*at)->key > key) at = &(*at)->next;
  if (*at && (*at)->key == key) {
    (*at)->value = value;
  } else {
    *at = new Mark(key, value, *at);
  }
}

size_t MarkList::size() const {
  size_t n = 0;
  for (const Mark* m = head_; m; m = m->next) ++n;
  return n;
}

namespace {

std::deque<LinearForm>& linear_forms() {
  static std::deque<LinearForm> forms;
  return forms;
}

}  // namespace

int keep_linear_form(LinearForm form) {
  linear_forms().push_back(std::move(form));
  return static_cast<int>(linear_forms().size());
}

const LinearForm* Exp::linear_form() const {
  if (op_arity(op) != AR_LINEAR || param <= 0) return nullptr;
  if (static_cast<size_t>(param) > linear_forms().size()) return nullptr;
  return &linear_forms()[param - 1];
}

int Exp::projection_order() const {
  if (op != PROJ_n)
    internal_error("file 'net':\nExp::projection_order called on '%s' operator", op_name(op));
  return param;
}

int Exp::function_name() const {
  if (op != CALL_n)
    internal_error("file 'net':\nExp::function_name called on '%s' operator", op_name(op));
  return param;
}
