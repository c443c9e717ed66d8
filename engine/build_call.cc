// The functions a program may call: the two conversions, the mathematics
// library's functions of one real, and pow. Anything else is refused.
#include <cmath>
#include <cstdio>

#include "engine/build_support.h"
#include "support/diagnostics.h"
#include "support/pty_stream.h"

namespace {

struct LibraryCall {
  const char* name;
  /// Number of arguments; those of pow come as one tuple operand.
  int arity;
  TypeClass result;
  UnaryFunction unary;
  BinaryFunction binary;
  ItemFactory make;
};

// Lambdas rather than the library's own names: those are overloaded, and
// taking their address is not something the library promises.
// clang-format off
#define KORVEL_UNARY(name) \
  { #name, 1, TC_REAL, {[](double x) { return std::name(x); }}, {}, nullptr }

const LibraryCall kLibrary[] = {
    {"real2int", 1, TC_INT, {}, {}, make_item<REAL2INT_int_EI>},
    {"int2real", 1, TC_REAL, {}, {}, make_item<INT2REAL_double_EI>},
    KORVEL_UNARY(cos),
    KORVEL_UNARY(sin),
    KORVEL_UNARY(tan),
    KORVEL_UNARY(acos),
    KORVEL_UNARY(asin),
    KORVEL_UNARY(atan),
    KORVEL_UNARY(cosh),
    KORVEL_UNARY(sinh),
    KORVEL_UNARY(tanh),
    KORVEL_UNARY(exp),
    KORVEL_UNARY(log),
    KORVEL_UNARY(log10),
    KORVEL_UNARY(sqrt),
    KORVEL_UNARY(fabs),
    KORVEL_UNARY(ceil),
    KORVEL_UNARY(floor),
    {"pow", 2, TC_REAL, {}, {[](double x, double y) { return std::pow(x, y); }}, nullptr},
};

#undef KORVEL_UNARY
// clang-format on

bool matches(Net& net, const LibraryCall& row, Exp* e, const CallArgs& args) {
  if (net.strings->intern("%s", row.name) != e->param) return false;
  // The arguments are read as the function wants them, whatever their type.
  return row.arity == args.count && row.result == type_class(net, net.type(e));
}

EvalItem* make_row_item(const LibraryCall& row, ItemPool& pool) {
  if (row.make) return row.make(pool, 0);
  if (row.arity == 1) return pool.make<UFUNC_double_EI>(row.unary);
  return pool.make<BFUNC_double_EI>(row.binary);
}

}  // namespace

EvalItem* make_call_item(Net& net, ItemPool& pool, Exp* e, CallArgs* args) {
  if (args->count == 1 && args->items[0]->op == TUPLE_n) {
    Exp* tuple = args->items[0];
    *args = CallArgs{tuple->operands.data(), tuple->arity()};
  }
  for (const LibraryCall& row : kLibrary) {
    if (matches(net, row, e, *args)) return make_row_item(row, pool);
  }
  fputs("Unsupported function :\n", stderr);
  {
    PtyStream out(stderr, 80);
    net.print_func_decl(e->param, out);
  }
  error("%s", "");
}
