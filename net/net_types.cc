// Types and clocks of expression nodes, derived on demand from one operand
// (or a declaration) per operator kind and cached in the node.
#include <vector>

#include "net/net.h"
#include "support/diagnostics.h"

namespace {

// Marks a node whose type is being computed, so a cycle is caught on re-entry.
QvType type_in_progress;
// The same for clocks: -1 means "not computed", so this is another value.
constexpr int kClockInProgress = -2;

}  // namespace

QvType* Net::type(Exp* e) {
  if (e->type == &type_in_progress) internal_error("Net::type : infinite loop");
  if (e->type) return e->type;
  e->type = &type_in_progress;
  QvType* t = nullptr;
  switch (e->op) {
    case EQUAL_n:
    case NEQ_n:
    case GTE_n:
    case GT_n:
    case LTE_n:
    case LT_n:
    case NOR_n:
    case DIESE_n:
      t = bool_type;
      break;
    case IF_n:
      t = type(e->operand(1));
      break;
    case CALL_n: {
      FuncInfo* f = func_info(e->param);
      if (!f) error("Net::type : undeclared function '%s'\n", strings->text(e->param));
      t = f->out_type;
      break;
    }
    case TUPLE_n: {
      std::vector<int> names;
      for (Exp* operand : e->operands) {
        QvType* member = type(operand);
        if (member->is_tuple) error("Net::type : a tuple cannot be a member of a tuple\n");
        names.push_back(member->name);
      }
      t = tuple_type(names.data(), e->arity());
      break;
    }
    case PROJ_n: {
      IndexList* members = type(e->operand(0))->member();
      int name = 0;
      if (e->param < 1 || IndexList::nth(members, e->param - 1, &name))
        error("Net::type : a tuple of %d members has no member %d\n", IndexList::length(members),
              e->param);
      t = named_type(name);
      break;
    }
    case RCL_n:
      t = real_type;
      break;
    case ICL_n:
      t = int_type;
      break;
    default:
      if (e->arity() == 0)
        internal_error("file net_types:\nNet::type '%s' is not implemented\n", op_name(e->op));
      t = type(e->operand(0));
  }
  return e->type = t;
}

int Net::clock(Exp* e) {
  if (e->clock == kClockInProgress) internal_error("file net_types:\nNet::clock : infinite loop\n");
  if (e->clock != -1) return e->clock;
  if (e->op == CURRENT_n)
    internal_error("file net_types:\nNet::clock 'CURRENT_n' is not implemented\n");
  int c = -1;
  if (e->op == WHEN_n) {
    c = e->operand(1)->ident;
    if (c == 0) error("The clock operand of 'when' operator must be named\n");
  } else {
    if (e->arity() == 0)
      internal_error("file net_types:\nNet::clock '%s' is not implemented\n", op_name(e->op));
    e->clock = kClockInProgress;
    c = clock(e->operand(0));
  }
  return e->clock = c;
}
