// Expressions and function declarations written back as qv text.
#include <cinttypes>
#include <cstdio>
#include <iterator>
#include <string>
#include <vector>

#include "net/net.h"
#include "support/diagnostics.h"
#include "support/pty_stream.h"

namespace {

// A coefficient or constant of a linear form: ICL_n ints are n/1.
struct Ratio {
  int32_t num;
  int32_t den;

  bool is(int32_t n) const { return num == n && den == 1; }
  bool negative() const { return num < 0; }
};

// "|num|" or "|num|/den"; unsigned, so the magnitude of INT32_MIN is exact.
std::string magnitude_text(Ratio r) {
  uint32_t magnitude = r.num < 0 ? 0u - static_cast<uint32_t>(r.num) : static_cast<uint32_t>(r.num);
  char text[32];
  if (r.den == 1)
    snprintf(text, sizeof text, "%" PRIu32, magnitude);
  else
    snprintf(text, sizeof text, "%" PRIu32 "/%" PRId32, magnitude, r.den);
  return text;
}

std::string signed_text(Ratio r) { return (r.negative() ? "-" : "") + magnitude_text(r); }

// Writes expressions with an explicit stack of steps instead of recursion:
// a left-nested sum of a million terms is a chain a million nodes deep.
class ExpPrinter {
 public:
  /// `guarded` cuts cycles of anonymous nodes with marks under `key`.
  ExpPrinter(PtyStream& out, const SymbolTable& names, bool guarded, int key)
      : out_(out), names_(names), guarded_(guarded), key_(key) {}

  void print_node(const Exp& e) {
    expand(e);
    run();
  }

  void print_operand(Exp* e) {
    todo_.push_back({Step::kOperand, e, {}});
    run();
  }

 private:
  struct Step {
    enum Kind { kText, kOperand, kUnmark } kind;
    Exp* exp;
    /// kText: one piece of the output.
    std::string text;
  };

  const char* who() const { return guarded_ ? "Iprint_def" : "print_def"; }

  void run() {
    while (!todo_.empty()) {
      Step step = std::move(todo_.back());
      todo_.pop_back();
      if (step.kind == Step::kText)
        out_.print("%s", step.text.c_str());
      else if (step.kind == Step::kOperand)
        operand(step.exp);
      else
        step.exp->set_mark(key_, 0);
    }
  }

  // Named operands by name; anonymous ones written out in place.
  void operand(Exp* e) {
    if (e->ident) {
      out_.print("%s", names_.text(e->ident));
    } else if (!guarded_) {
      expand(*e);
    } else if (e->get_mark(key_)) {
      out_.print("WARNING : RECURSION ");
    } else {
      e->set_mark(key_, 1);
      todo_.push_back({Step::kUnmark, e, {}});
      expand(*e);
    }
  }

  void text(std::string t) { seq_.push_back({Step::kText, nullptr, std::move(t)}); }
  void sub(Exp* e) { seq_.push_back({Step::kOperand, e, {}}); }
  void list(const Operands& operands) {
    for (size_t i = 0; i < operands.size(); ++i) {
      if (i) text(", ");
      sub(operands[i]);
    }
  }

  // Lays out the steps of one node in order, then stacks them so that the
  // first comes out first.
  void expand(const Exp& e) {
    seq_.clear();
    const OpKind op = e.op;
    switch (op_arity(op)) {
      case AR_LEAF:
        if (!e.ident)
          internal_error("file 'net':\nExp::%s : '%s' Exp must have an identifier\n", who(),
                         op_name(op));
        text(names_.text(e.ident));
        break;
      case AR_UNARY:
        text(std::string(op_symbol(op)) + "(");
        sub(e.operand(0));
        text(")");
        break;
      case AR_BINARY:
        text("(");
        sub(e.operand(0));
        text(std::string(")") + op_symbol(op) + "(");
        sub(e.operand(1));
        text(")");
        break;
      case AR_IF:
        text(" if (");
        sub(e.operand(0));
        text(") then (");
        sub(e.operand(1));
        text(") else (");
        sub(e.operand(2));
        text(")");
        break;
      case AR_NARY:
        text(std::string(op_symbol(op)) + "(");
        list(e.operands);
        text(")");
        break;
      case AR_LINEAR:
      case AR_PARAM:
        special_form(e);
        break;
      case AR_BLANK:
        internal_error("file 'net':\nExp::%s '%s' is not implemented\n", who(), op_name(op));
    }
    todo_.insert(todo_.end(), std::make_move_iterator(seq_.rbegin()),
                 std::make_move_iterator(seq_.rend()));
  }

  // ORDER OP: the kinds with a form of their own.
  void special_form(const Exp& e) {
    switch (e.op) {
      case ICL_n: {
        const LinearForm& form = linear_form(e);
        std::vector<Ratio> coefs;
        for (int c : form.icoefs) coefs.push_back({c, 1});
        linear(e.operands, coefs, {form.iconst, 1});
        return;
      }
      case RCL_n: {
        const LinearForm& form = linear_form(e);
        std::vector<Ratio> coefs;
        for (const Fract& c : form.rcoefs) coefs.push_back({c.numerator(), c.denominator()});
        linear(e.operands, coefs, {form.rconst.numerator(), form.rconst.denominator()});
        return;
      }
      case PROJ_n:
        text("proj(");
        text(std::to_string(e.projection_order()));
        text(")(");
        sub(e.operand(0));
        text(")");
        return;
      case CALL_n: {
        const Exp* args = e.operand(0)->op == TUPLE_n ? e.operand(0) : &e;
        text(std::string(names_.text(e.function_name())) + "(");
        list(args->operands);
        text(")");
        return;
      }
      default:
        internal_error("file 'net':\nExp::%s '%s' is not implemented\n", who(), op_name(e.op));
    }
  }

  // A linear form made by kind alone has no coefficients.
  static const LinearForm& linear_form(const Exp& e) {
    static const LinearForm none;
    const LinearForm* form = e.linear_form();
    return form ? *form : none;
  }

  // c0*x0 +c1*x1 ... +k, with unit coefficients and a zero constant elided;
  // each number is a piece of its own.
  void linear(const Operands& operands, const std::vector<Ratio>& coefs, Ratio constant) {
    if (coefs.size() != operands.size()) {
      internal_error("file 'net':\nExp::%s : %d coefficients for %d operands\n", who(),
                     static_cast<int>(coefs.size()), static_cast<int>(operands.size()));
    }
    if (operands.empty()) {
      text(signed_text(constant));
      return;
    }
    for (size_t i = 0; i < operands.size(); ++i) {
      Ratio c = coefs[i];
      if (i == 0) {
        if (c.is(-1)) {
          text("-");
        } else if (!c.is(1)) {
          text(signed_text(c));
          text("*");
        }
      } else {
        text(c.negative() ? " -" : " +");
        if (!c.is(1) && !c.is(-1)) {
          text(magnitude_text(c));
          text("*");
        }
      }
      sub(operands[i]);
    }
    if (constant.is(0)) return;
    text(constant.negative() ? " " : " +");
    text(signed_text(constant));
  }

  PtyStream& out_;
  const SymbolTable& names_;
  bool guarded_;
  int key_;
  /// Steps still to do; the next is at the back.
  std::vector<Step> todo_;
  std::vector<Step> seq_;
};

}  // namespace

void Exp::print_def(PtyStream& out, const SymbolTable& names) const {
  ExpPrinter(out, names, false, 0).print_node(*this);
}

void Exp::Iprint_def(PtyStream& out, const SymbolTable& names, int key) {
  ExpPrinter(out, names, true, key).print_node(*this);
}

void print_exp(Exp* e, const SymbolTable& names) {
  PtyStream out(80);
  ExpPrinter(out, names, true, new_pass_key()).print_operand(e);
}

void Net::write_params(const IndexList* params, PtyStream& out) {
  for (const IndexList* p = params; p && p->next; p = p->next->next) {
    if (p != params) out.print("; ");
    out.print("%s : %s", strings->text(p->value), strings->text(p->next->value));
  }
}

void Net::write_func_decl(const FuncInfo& f, PtyStream& out) {
  out.print("function %s (", f.name);
  write_params(f.in_params, out);
  out.print(")");
  out.newline();
  out.print("returns (");
  write_params(f.out_params, out);
  out.print(");");
}

void Net::print_func_decl(int name, PtyStream& out) {
  FuncInfo* f = func_info(name);
  if (!f) error("Net::print_func_decl : undeclared function `%s`\n", strings->text(name));
  out.newline();
  write_func_decl(*f, out);
}
