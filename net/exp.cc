#include "net/exp.h"

#include <algorithm>

#include "support/diagnostics.h"

int new_pass_key() {
  // Keys only grow, so a traversal never has to clear the marks of older ones.
  static int last_key = 0;
  return ++last_key;
}

std::intptr_t Exp::get_mark(int key) const {
  for (const auto& [k, value] : marks) {
    if (k < key) break;
    if (k == key) return value;
  }
  return 0;
}

void Exp::set_mark(int key, std::intptr_t value) {
  auto at =
      std::find_if(marks.begin(), marks.end(), [key](const auto& m) { return m.first <= key; });
  if (at != marks.end() && at->first == key) {
    at->second = value;
  } else {
    marks.insert(at, {key, value});
  }
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
