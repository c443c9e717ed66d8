#include "tests/engine/random_program.h"

#include <random>
#include <vector>

namespace {

enum Type { kBool, kInt, kReal, kColor, kGear, kTypes };
const char* const kTypeNames[] = {"bool", "int", "real", "color", "gear"};

// ki and kr are declared without a value: the engine names them, and a
// number reads a name as zero.
const std::vector<std::string> kAtoms[] = {
    {"true", "false", "c", "d"},
    {"0", "1", "3", "7", "i", "j", "ki"},
    {"0.0", "1.5", "2.0", "x", "y", "kr"},
    {"red", "green", "blue", "k"},
    {"low", "high", "g"},
};

class Generator {
 public:
  explicit Generator(unsigned seed) : rng_(seed) {}

  std::string program() {
    std::string text =
        "type color = (red, green, blue);\n"
        "type gear; const low : gear; const high : gear;\n"
        "const ki : int; const kr : real;\n"
        "function sin (a : real) returns (b : real);\n"
        "function sqrt (a : real) returns (b : real);\n"
        "function floor (a : real) returns (b : real);\n"
        "function pow (a : real; b : real) returns (c : real);\n";
    std::vector<Type> local_types(pick(5));
    for (size_t n = 0; n < local_types.size(); ++n) {
      local_types[n] = any_type();
      locals_[local_types[n]].push_back("v" + std::to_string(n));
    }
    // A knot: ints that read each other within the instant, defined from
    // the first one on, and outputs that read two of them, on their own,
    // through memories or as a value and its clock, so that the order in
    // which they are computed shows.
    const int knot = chance(0.5) ? 2 + pick(2) : 0;
    for (int n = 0; n < knot; ++n) locals_[kInt].push_back("w" + std::to_string(n));
    const bool knot_clocked = knot && chance(0.5);
    struct Output {
      Type type;
      std::string clock;
    };
    std::vector<Output> outputs(1 + pick(3));
    std::string declared;
    for (size_t n = 0; n < outputs.size(); ++n) {
      Output& o = outputs[n];
      o.type = any_type();
      const std::string decl = "o" + std::to_string(n) + " : " + kTypeNames[o.type];
      if (chance(0.3)) o.clock = clock();
      declared += (n ? "; " : "") + (o.clock.empty() ? decl : "(" + decl + ") when " + o.clock);
    }
    if (knot) declared += "; ok : int";
    if (knot_clocked) declared += "; (oc : int) when wc";
    text += "node n (c, d : bool; i, j : int; x, y : real; k : color; g : gear)\nreturns (" +
            declared + ");\n";
    std::string vars;
    for (size_t n = 0; n < local_types.size(); ++n) {
      vars += "; v" + std::to_string(n) + " : " + kTypeNames[local_types[n]];
    }
    for (int n = 0; n < knot; ++n) vars += "; w" + std::to_string(n) + " : int";
    if (knot) vars += "; wc : bool";
    if (!vars.empty()) text += "var " + vars.substr(2) + ";\n";
    text += "let\n";
    for (int n = 0; n < knot; ++n) {
      const std::string a = "w" + std::to_string(pick(knot));
      const std::string b = chance(0.7) ? "w" + std::to_string(pick(knot)) : atom(kInt);
      text += "  w" + std::to_string(n) + " = " + std::to_string(n + 1) + " -> " + a + " " +
              one({"+", "-", "*"}) + " " + b + " + i;\n";
    }
    if (knot) {
      const std::string reads[] = {"w0 - 3 * w1", "pre w0 - 3 * pre w1",
                                   "current (pre (w0 when wc))"};
      text += "  ok = " + reads[pick(3)] + ";\n  wc = w1 > w0;\n";
    }
    if (knot_clocked) text += "  oc = w0 when wc;\n";
    for (size_t n = 0; n < local_types.size(); ++n) {
      // Defined at the first instant, a local read back in the same
      // instant keeps its cycle defined after it.
      const Type t = local_types[n];
      text += "  v" + std::to_string(n) + " = " + (chance(0.5) ? one(kAtoms[t]) + " -> " : "") +
              expr(t, 3, false) + ";\n";
    }
    for (size_t n = 0; n < outputs.size(); ++n) {
      const std::string e = expr(outputs[n].type, 3, true);
      text += "  o" + std::to_string(n) + " = " +
              (outputs[n].clock.empty() ? e : "(" + e + ") when " + outputs[n].clock) + ";\n";
    }
    for (int n = pick(3); n > 0; --n) text += "  assert " + expr(kBool, 2, true) + ";\n";
    return text + "tel\n";
  }

 private:
  int pick(int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng_); }
  bool chance(double p) { return std::bernoulli_distribution(p)(rng_); }
  Type any_type() { return static_cast<Type>(pick(kTypes)); }
  std::string one(const std::vector<std::string>& xs) {
    return xs[pick(static_cast<int>(xs.size()))];
  }

  /// An input clock, or a Boolean local that may well be nil.
  std::string clock() {
    if (!locals_[kBool].empty() && chance(0.2)) return one(locals_[kBool]);
    return chance(0.5) ? "c" : "d";
  }

  std::string atom(Type t) {
    if (!locals_[t].empty() && chance(0.5)) return one(locals_[t]);
    return one(kAtoms[t]);
  }

  /// An operand of type `t`, now and then of another type. The loader
  /// finds no clock for a `current` down the first operands of a `pre`,
  /// `->` or `when`, so none goes there: `first` marks first operands.
  std::string sub(Type t, int depth, bool first = false) {
    return "(" + expr(chance(0.06) ? any_type() : t, depth - 1, first) + ")";
  }

  std::string binary(Type t, const std::vector<std::string>& ops, int depth) {
    return sub(t, depth, true) + " " + one(ops) + " " + sub(t, depth);
  }

  std::string expr(Type t, int depth, bool first) {
    if (depth == 0 || chance(0.2)) return atom(t);
    switch (pick(5)) {
      case 0:
        return "if " + sub(kBool, depth, true) + " then " + sub(t, depth) + " else " +
               sub(t, depth);
      case 1:
        return "pre " + sub(t, depth, true);
      case 2:
        return sub(t, depth, true) + " -> " + sub(t, depth);
      case 3:
        if (!first) return "current (" + sub(t, depth, true) + " when " + clock() + ")";
        [[fallthrough]];
      default:
        return operation(t, depth);
    }
  }

  std::string operation(Type t, int depth) {
    switch (t) {
      case kBool:
        switch (pick(7)) {
          case 0:
            return "not " + sub(kBool, depth, true);
          case 1:
            return binary(kBool, {"and", "or", "xor", "=>"}, depth);
          case 2:
            return binary(any_type(), {"=", "<>"}, depth);
          case 3:
            return binary(chance(0.5) ? kInt : kReal, {"<", "<=", ">", ">="}, depth);
          case 4:
            return "#(" + sub(kBool, depth, true) + ", " + sub(kBool, depth) + ", " +
                   sub(kBool, depth) + ")";
          case 5:
            return "nor(" + sub(kBool, depth, true) + ", " + sub(kBool, depth) + ")";
          default:
            return atom(kBool);
        }
      case kInt:
        switch (pick(3)) {
          case 0:
            return binary(kInt, {"+", "-", "*", "div", "mod", "/"}, depth);
          case 1:
            return "- " + sub(kInt, depth, true);
          default:
            return "int " + sub(kReal, depth, true);
        }
      case kReal:
        switch (pick(6)) {
          case 0:
          case 1:
            return binary(kReal, {"+", "-", "*", "/"}, depth);
          case 2:
            return "- " + sub(kReal, depth, true);
          case 3:
            return "real " + sub(kInt, depth, true);
          case 4:
            return (chance(0.5) ? "sin" : chance(0.5) ? "sqrt" : "floor") + sub(kReal, depth, true);
          default:
            return "pow(" + sub(kReal, depth, true) + ", " + sub(kReal, depth) + ")";
        }
      default:
        return atom(t);
    }
  }

  std::mt19937 rng_;
  std::vector<std::string> locals_[kTypes];
};

}  // namespace

std::string random_program(unsigned seed) {
  return Generator(seed).program();
}
