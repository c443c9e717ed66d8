#include "reader/load_check.h"

#include <string>

#include "net/net.h"
#include "net/op_kind.h"
#include "support/diagnostics.h"

namespace {

/// The type of a node, or null where asking would stop the process (a
/// member taken of what is no tuple): that fault is the loader's to report
/// if the node is ever built.
QvType* known_type(Net& net, Exp* e) {
  if (e->op != PROJ_n) return net.type(e);
  QvType* whole = known_type(net, e->operand(0));
  if (!whole || !whole->is_tuple) return nullptr;
  int count = 0;
  for (IndexList* m = whole->member(); m; m = m->next) ++count;
  return e->param >= 1 && e->param <= count ? net.type(e) : nullptr;
}

/// The type an item reads a number as: int for int, real for all else.
QvType* number_read(Net& net, QvType* t) {
  return t == net.int_type ? net.int_type : net.real_type;
}

/// ORDER OP: the type each operand of `e` is read as by the item the graph
/// builder makes for it; null for an operand read as whatever it is.
QvType* read_as(Net& net, Exp* e, int i) {
  switch (e->op) {
    case NOT_n:
    case AND_n:
    case OR_n:
    case XOR_n:
    case IMPL_n:
    case NOR_n:
    case DIESE_n:
      return net.bool_type;
    case WHEN_n:
      return i == 1 ? net.bool_type : nullptr;
    case UMINUS_n:
    case PLUS_n:
    case MINUS_n:
    case TIMES_n:
    case SLASH_n:
    case GTE_n:
    case GT_n:
    case LTE_n:
    case LT_n: {
      QvType* first = known_type(net, e->operand(0));
      return first ? number_read(net, first) : nullptr;
    }
    case DIV_n:
    case MOD_n:
      return net.int_type;
    case EQUAL_n:
    case NEQ_n:
      return known_type(net, e->operand(1));
    case IF_n:
      return i == 0 ? net.bool_type : known_type(net, e->operand(1));
    case ARROW_n:
      return i == 1 ? known_type(net, e->operand(0)) : nullptr;
    default:
      return nullptr;
  }
}

/// The type `e` has of itself, before an equation defining a variable by it
/// gave it the variable's type; null where it is not known without asking
/// what would stop the process.
QvType* own_type(Net& net, Exp* e) {
  if (e->arity() == 0) {
    const IdentInfo* info = net.ident_info(e->ident);
    return info ? info->type : nullptr;
  }
  switch (op_type_rule(e->op)) {
    case TY_BOOL:
      return net.bool_type;
    case TY_INT:
      return net.int_type;
    case TY_REAL:
      return net.real_type;
    case TY_OPERAND0:
      return known_type(net, e->operand(0));
    case TY_THEN:
      return known_type(net, e->operand(1));
    case TY_RESULT: {
      const FuncInfo* f = net.func_info(e->param);
      return f ? f->out_type : nullptr;
    }
    default:
      return nullptr;
  }
}

std::string type_text(const Net& net, const QvType* t) {
  return t->is_tuple ? "a tuple" : net.strings->text(t->name);
}

std::string operator_text(const Net& net, const Exp* e) {
  if (e->op == CALL_n) return net.strings->text(e->param);
  return op_symbol(e->op);
}

struct Checker {
  Net& net;
  const char* file;
  const EquationPlace* place = nullptr;

  std::string where() const {
    if (!place->name) return "in an assertion, ";
    return "in '" + std::string(net.strings->text(place->name)) + "', ";
  }

  void check_operands(Exp* e) {
    for (int i = 0; i < e->arity(); ++i) {
      QvType* want = read_as(net, e, i);
      if (!want) continue;
      QvType* have = known_type(net, e->operand(i));
      if (!have || have == want) continue;
      source_warning(file, place->line, "%s%s operand of '%s' is read as %s", where().c_str(),
                     type_text(net, have).c_str(), operator_text(net, e).c_str(),
                     type_text(net, want).c_str());
      return;
    }
  }

  void check_call(Exp* e) {
    const FuncInfo* f = net.func_info(e->param);
    if (!f || !f->in_type) return;
    Exp* arg = e->operand(0);
    const bool several = f->in_type->is_tuple;
    if (several != (arg->op == TUPLE_n)) return;  // the builder refuses the arity
    IndexList* members = several ? f->in_type->member() : nullptr;
    for (int i = 0; i < (several ? arg->arity() : 1); ++i) {
      QvType* want = f->in_type;
      if (several) {
        if (!members) return;
        want = net.named_type(members->value);
        members = members->next;
      }
      QvType* have = known_type(net, several ? arg->operand(i) : arg);
      if (!have || have == want) continue;
      source_warning(file, place->line,
                     "%sargument %d of '%s' is %s where its declaration says %s", where().c_str(),
                     i + 1, net.strings->text(e->param), type_text(net, have).c_str(),
                     type_text(net, want).c_str());
      return;
    }
  }

  /// The equation takes the variable's type whatever its own, and every
  /// item reading it reads that type.
  void check_definition() {
    QvType* have = own_type(net, place->expression);
    QvType* want = net.ident_info(place->name)->type;
    if (!have || have == want || have->is_tuple || want->is_tuple) return;
    source_warning(file, place->line, "equation of '%s' is %s where its declaration says %s",
                   net.strings->text(place->name), type_text(net, have).c_str(),
                   type_text(net, want).c_str());
  }
};

/// False for an equation a later one for the same name replaced.
bool in_use(Net& net, const EquationPlace& place) {
  if (!place.name) return true;
  const Exp* def = net.ident_info(place.name)->def;
  return def == place.expression || (def->op == PROJ_n && def->operand(0) == place.expression);
}

}  // namespace

void check_operand_kinds(Net& net, const char* file, const std::vector<EquationPlace>& equations) {
  Checker checker{net, file};
  // Shared operands are checked once: a node is marked by this pass's key,
  // which costs nothing where a set of a million nodes would cost a heap.
  const int seen = new_pass_key();
  std::vector<Exp*> stack;
  for (const EquationPlace& place : equations) {
    checker.place = &place;
    if (!in_use(net, place)) continue;
    if (place.name && net.ident_info(place.name)->def == place.expression) checker.check_definition();
    stack.push_back(place.expression);
    while (!stack.empty()) {
      Exp* e = stack.back();
      stack.pop_back();
      if (e->arity() == 0 || e->visit_key == seen) continue;
      e->visit_key = seen;
      if (e->op == CALL_n) {
        checker.check_call(e);
      } else {
        checker.check_operands(e);
      }
      for (Exp* operand : e->operands) stack.push_back(operand);
    }
  }
}
