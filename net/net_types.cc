// Types and clocks of expression nodes, derived on demand by the type rule
// of the operator table (net/op_kind.h) and cached in the node. Both walk
// with an explicit stack: a left-nested sum of a million terms is a chain
// of a million nodes, far deeper than the call stack allows.
#include <algorithm>
#include <utility>
#include <vector>

#include "net/net.h"
#include "support/diagnostics.h"

namespace {

// Marks a node whose type is being computed, so a cycle is caught on re-entry.
QvType type_in_progress;
// The same for clocks: -1 means "not computed", so this is another value.
constexpr int kClockInProgress = -2;

// The operands whose types decide the type of `e`, as a range of indexes.
std::pair<int, int> type_sources(const Exp* e) {
  switch (op_type_rule(e->op)) {
    case TY_THEN:
      return {1, 2};
    case TY_TUPLE:
      return {0, e->arity()};
    case TY_OPERAND0:
    case TY_MEMBER:
      return {0, std::min(e->arity(), 1)};
    case TY_DECLARED:
    case TY_BOOL:
    case TY_INT:
    case TY_REAL:
    case TY_RESULT:
      break;
  }
  return {0, 0};
}

}  // namespace

// Once every source of a node is typed, its own type follows from them.
QvType* Net::type_from_sources(Exp* e) {
  switch (op_type_rule(e->op)) {
    case TY_DECLARED:
      break;
    case TY_BOOL:
      return bool_type;
    case TY_OPERAND0:
      return e->operand(0)->type;
    case TY_THEN:
      return e->operand(1)->type;
    case TY_INT:
      return int_type;
    case TY_REAL:
      return real_type;
    case TY_RESULT: {
      FuncInfo* f = func_info(e->param);
      if (!f) error("Net::type : undeclared function '%s'\n", strings->text(e->param));
      return f->out_type;
    }
    case TY_TUPLE: {
      std::vector<int> names;
      for (Exp* operand : e->operands) {
        if (operand->type->is_tuple) error("Net::type : a tuple cannot be a member of a tuple\n");
        names.push_back(operand->type->name);
      }
      return tuple_type(names.data(), e->arity());
    }
    case TY_MEMBER: {
      IndexList* members = e->operand(0)->type->member();
      int name = 0;
      if (e->param < 1 || IndexList::nth(members, e->param - 1, &name))
        error("Net::type : a tuple of %d members has no member %d\n", IndexList::length(members),
              e->param);
      return named_type(name);
    }
  }
  // A leaf is made with its type; one without has nothing to take it from.
  internal_error("file net_types:\nNet::type '%s' is not implemented\n", op_name(e->op));
}

QvType* Net::type(Exp* root) {
  if (root->type == &type_in_progress) internal_error("Net::type : infinite loop");
  if (root->type) return root->type;
  std::vector<std::pair<Exp*, int>>& pending = type_walk_;
  pending.assign(1, {root, type_sources(root).first});
  root->type = &type_in_progress;
  while (!pending.empty()) {
    auto& [e, next] = pending.back();
    if (next < type_sources(e).second) {
      Exp* source = e->operand(next++);
      if (source->type == &type_in_progress) internal_error("Net::type : infinite loop");
      if (!source->type) {
        source->type = &type_in_progress;
        pending.emplace_back(source, type_sources(source).first);
      }
      continue;
    }
    e->type = type_from_sources(e);
    pending.pop_back();
  }
  return root->type;
}

// ORDER OP: the kinds that decide a clock rather than take operand 0's.
int Net::clock(Exp* root) {
  // The clock comes down the chain of first operands to a node that knows
  // or decides it; every node on the way then takes it.
  std::vector<Exp*> chain;
  int c = -1;
  for (Exp* e = root;; e = e->operand(0)) {
    if (e->clock == kClockInProgress) internal_error("file net_types:\nNet::clock : infinite loop\n");
    if (e->clock != -1) {
      c = e->clock;
      break;
    }
    if (e->op == CURRENT_n)
      internal_error("file net_types:\nNet::clock 'CURRENT_n' is not implemented\n");
    if (e->op == WHEN_n) {
      c = e->operand(1)->ident;
      if (c == 0) error("The clock operand of 'when' operator must be named\n");
      chain.push_back(e);
      break;
    }
    if (e->arity() == 0)
      internal_error("file net_types:\nNet::clock '%s' is not implemented\n", op_name(e->op));
    e->clock = kClockInProgress;
    chain.push_back(e);
  }
  for (Exp* e : chain) e->clock = c;
  return c;
}
