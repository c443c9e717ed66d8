#include "reader/parse_actions.h"

#include <cstdio>

#include "net/net.h"
#include "support/diagnostics.h"

void declare_names(Net* net, DeclareName declare, IndexList* names, int type_name, int clock) {
  QvType* type = net->named_type(type_name);
  for (const IndexList* n = names; n; n = n->next) (net->*declare)(n->value, type, clock);
  delete names;
}

namespace {

/// The type of a parameter list: its type names, as a tuple when several.
QvType* params_type(Net* net, const IndexList* params) {
  IndexList* types = nullptr;
  for (const IndexList* p = params; p; p = p->next->next) IndexList::append(&types, p->next->value);
  return net->tuple_type(types);
}

struct ConversionRow {
  const char* function;
  const char* from;
  const char* to;
  /// Process-wide: one declaration per process, whatever net is being read.
  bool pending;
};

ConversionRow conversions[] = {
    {"int2real", "int", "real", true},
    {"real2int", "real", "int", true},
};

}  // namespace

void declare_function(Net* net, int name, IndexList* in_params, IndexList* out_params) {
  net->add_usr_proc(name, params_type(net, in_params), params_type(net, out_params), in_params,
                    out_params);
}

IndexList* param_pair(int name, int type_name) {
  const int pair[] = {name, type_name};
  return new IndexList(pair, 2);
}

Exp* convert(Net* net, Conversion conversion, Exp* e) {
  ConversionRow& row = conversions[conversion];
  SymbolTable* strings = net->strings;
  int function = strings->intern("%s", row.function);
  if (row.pending) {
    row.pending = false;
    // Interned in the order a written declaration would read them, so the
    // string numbers do not depend on the order arguments are evaluated in.
    int x = strings->intern("x");
    int from = strings->intern("%s", row.from);
    int y = strings->intern("y");
    int to = strings->intern("%s", row.to);
    declare_function(net, function, param_pair(x, from), param_pair(y, to));
  }
  return net->new_call(function, e);
}

void reset_conversions() {
  for (ConversionRow& row : conversions) row.pending = true;
}

Exp* qvnet::GetIdentInfo(Net* net, int name) {
  // Assertion records have no reference leaf: their generated names are
  // not usable in expressions.
  IdentInfo* info = net->ident_info(name);
  if (!info || !info->ref) {
    std::fprintf(stderr, "qvnet::GetIdentInfo : undeclared ident '%s'\n", net->strings->text(name));
    end_process(1);
  }
  return info->ref;
}
