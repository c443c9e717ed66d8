#include "net/op_kind.h"

const char* op_name(int kind) {
  return kind >= 0 && kind < N_OPKINDS ? kOpTable[kind].name : "?";
}

const char* op_symbol(int kind) {
  return kind >= 0 && kind < N_OPKINDS ? kOpTable[kind].symbol : "";
}

// What the readers of the table take for granted about a row, checked for
// every row when this file compiles.
namespace {

constexpr bool every_row(bool (*holds)(const OpInfo&)) {
  for (const OpInfo& row : kOpTable) {
    if (!holds(row)) return false;
  }
  return true;
}

}  // namespace

static_assert(
    [] {
      for (int k = 0; k < N_OPKINDS; ++k) {
        if (kOpTable[k].kind != k) return false;
      }
      return true;
    }(),
    "kOpTable: the rows are not in enum order (ORDER OP)");

// Net::type asks a leaf for the type it was made with, and every other
// kind for the operands its rule reads.
static_assert(every_row([](const OpInfo& r) {
                return (r.type == TY_DECLARED) == (operand_count(r.arity) == 0);
              }),
              "kOpTable: only the kinds without operands take a declared type");
static_assert(every_row([](const OpInfo& r) {
                return r.type != TY_OPERAND0 || operand_count(r.arity) >= 1;
              }),
              "kOpTable: TY_OPERAND0 on a kind without a fixed operand 0");
static_assert(every_row([](const OpInfo& r) { return (r.type == TY_THEN) == (r.arity == AR_IF); }),
              "kOpTable: TY_THEN is the type rule of the AR_IF kinds");
static_assert(every_row([](const OpInfo& r) {
                return (r.type != TY_MEMBER && r.type != TY_RESULT) || r.arity == AR_PARAM;
              }),
              "kOpTable: TY_MEMBER and TY_RESULT read the `param` of an AR_PARAM kind");

// The minimal network swaps operands 0 and 1 of a commuting kind.
static_assert(every_row([](const OpInfo& r) { return !r.commutes || r.arity == AR_BINARY; }),
              "kOpTable: only binary kinds commute");

// The printer writes unary and binary kinds with their symbol.
static_assert(every_row([](const OpInfo& r) {
                return (r.arity != AR_UNARY && r.arity != AR_BINARY) || r.symbol[0] != '\0';
              }),
              "kOpTable: a unary or binary kind without a symbol");

// The builder reads the operand that decides the class, and makes the
// leaves, memories and calls from what only those kinds carry.
static_assert(every_row([](const OpInfo& r) {
                return (r.by != BY_FIRST || operand_count(r.arity) >= 1) &&
                       (r.by != BY_SECOND || operand_count(r.arity) >= 2);
              }),
              "kOpTable: the class is decided by an operand the kind does not have");
static_assert(every_row([](const OpInfo& r) {
                switch (r.build) {
                  case EV_CONSTANT:
                    return r.arity == AR_LEAF && r.by == BY_SELF && !r.extern_other;
                  case EV_INPUT:
                    return r.arity == AR_LEAF;
                  case EV_MEMORY:
                  case EV_FIRST:
                    return r.arity == AR_UNARY;
                  case EV_CALL:
                    return r.arity == AR_PARAM && r.by == BY_SELF && !r.extern_other;
                  case EV_NONE:
                    return r.by == BY_SELF && !r.extern_other;
                  case EV_CLASSES:
                    break;
                }
                return true;
              }),
              "kOpTable: an item built in a way the kind's operands do not allow, or a class "
              "choice on a kind whose item does not come from the engine's table");
