#include "net/op_kind.h"

namespace {

struct OpRow {
  const char* name;
  const char* symbol;
};

// ORDER OP: one row per OpKind, in enum order.
constexpr OpRow kOpTable[N_OPKINDS] = {
    {"ERROR_n", ""},    {"CONST_n", ""},      {"INPUT_n", ""},  {"QVREF_n", ""},
    {"MODELREF_n", ""}, {"PRE_n", "pre"},     {"CURRENT_n", "current"},
    {"NOT_n", "not"},   {"UMINUS_n", "-"},    {"LAST_n", "last"},
    {"INIT_n", "init"}, {"ARROW_n", "->"},    {"WHEN_n", "when"},
    {"AND_n", "and"},   {"OR_n", "or"},       {"XOR_n", "xor"},
    {"IMPL_n", "=>"},   {"EQUAL_n", "="},     {"NEQ_n", "<>"},
    {"GTE_n", ">="},    {"GT_n", ">"},        {"LTE_n", "<="},
    {"LT_n", "<"},      {"DIV_n", "div"},     {"MOD_n", "mod"},
    {"MINUS_n", "-"},   {"PLUS_n", "+"},      {"SLASH_n", "/"},
    {"TIMES_n", "*"},   {"POWER_n", "**"},    {"IF_n", ""},
    {"TUPLE_n", ""},    {"NOR_n", "nor"},     {"DIESE_n", "#"},
    {"RCL_n", ""},      {"ICL_n", ""},        {"PROJ_n", ""},
    {"CALL_n", ""},
};

}  // namespace

const char* op_name(int kind) {
  return kind >= 0 && kind < N_OPKINDS ? kOpTable[kind].name : "?";
}

const char* op_symbol(int kind) {
  return kind >= 0 && kind < N_OPKINDS ? kOpTable[kind].symbol : "";
}
