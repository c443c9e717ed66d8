// Expressions and function declarations written back as qv text.
#include <cinttypes>
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
void print_magnitude(PtyStream& out, Ratio r, const char* before, const char* after) {
  uint32_t magnitude = r.num < 0 ? 0u - static_cast<uint32_t>(r.num) : static_cast<uint32_t>(r.num);
  if (r.den == 1)
    out.print("%s%" PRIu32 "%s", before, magnitude, after);
  else
    out.print("%s%" PRIu32 "/%" PRId32 "%s", before, magnitude, r.den, after);
}

void print_signed(PtyStream& out, Ratio r, const char* after) {
  print_magnitude(out, r, r.negative() ? "-" : "", after);
}

class ExpPrinter {
 public:
  /// `guarded` cuts cycles of anonymous nodes with marks under `key`.
  ExpPrinter(PtyStream& out, const SymbolTable& names, bool guarded, int key)
      : out_(out), names_(names), guarded_(guarded), key_(key) {}

  void node(const Exp& e) {
    OpKind op = e.op;
    if (is_leaf_kind(op)) {
      if (!e.ident)
        internal_error("file 'net':\nExp::%s : '%s' Exp must have an identifier\n", who(),
                       op_name(op));
      out_.print("%s", names_.text(e.ident));
    } else if (is_unary_kind(op)) {
      out_.print("%s(", op_symbol(op));
      operand(e.operand(0));
      out_.print(")");
    } else if (is_binary_kind(op)) {
      out_.print("(");
      operand(e.operand(0));
      out_.print(")%s(", op_symbol(op));
      operand(e.operand(1));
      out_.print(")");
    } else if (op == IF_n) {
      out_.print(" if (");
      operand(e.operand(0));
      out_.print(") then (");
      operand(e.operand(1));
      out_.print(") else (");
      operand(e.operand(2));
      out_.print(")");
    } else if (is_nary_kind(op)) {
      out_.print("%s(", op_symbol(op));
      operand_list(e.operands);
      out_.print(")");
    } else if (op == ICL_n) {
      std::vector<Ratio> coefs;
      for (int c : e.icoefs) coefs.push_back({c, 1});
      linear(e.operands, coefs, {e.iconst, 1});
    } else if (op == RCL_n) {
      std::vector<Ratio> coefs;
      for (const Fract& c : e.rcoefs) coefs.push_back({c.numerator(), c.denominator()});
      linear(e.operands, coefs, {e.rconst.numerator(), e.rconst.denominator()});
    } else if (op == PROJ_n) {
      out_.print("proj(%d)(", e.projection_order());
      operand(e.operand(0));
      out_.print(")");
    } else if (op == CALL_n) {
      const Exp* args = e.operand(0)->op == TUPLE_n ? e.operand(0) : &e;
      out_.print("%s(", names_.text(e.function_name()));
      operand_list(args->operands);
      out_.print(")");
    } else {
      internal_error("file 'net':\nExp::%s '%s' is not implemented\n", who(), op_name(op));
    }
  }

  /// Named operands by name; anonymous ones written out in place.
  void operand(Exp* e) {
    if (e->ident) {
      out_.print("%s", names_.text(e->ident));
    } else if (!guarded_) {
      node(*e);
    } else if (e->get_mark(key_)) {
      out_.print("WARNING : RECURSION ");
    } else {
      e->set_mark(key_, 1);
      node(*e);
      e->set_mark(key_, 0);
    }
  }

 private:
  const char* who() const { return guarded_ ? "Iprint_def" : "print_def"; }

  void operand_list(const std::vector<Exp*>& operands) {
    for (size_t i = 0; i < operands.size(); ++i) {
      if (i) out_.print(", ");
      operand(operands[i]);
    }
  }

  // c0*x0 +c1*x1 ... +k, with unit coefficients and a zero constant elided.
  void linear(const std::vector<Exp*>& operands, const std::vector<Ratio>& coefs, Ratio constant) {
    if (operands.empty()) {
      print_signed(out_, constant, "");
      return;
    }
    for (size_t i = 0; i < operands.size(); ++i) {
      Ratio c = coefs[i];
      if (i == 0) {
        if (c.is(-1))
          out_.print("-");
        else if (!c.is(1))
          print_signed(out_, c, "*");
      } else {
        out_.print(c.negative() ? " -" : " +");
        if (!c.is(1) && !c.is(-1)) print_magnitude(out_, c, "", "*");
      }
      operand(operands[i]);
    }
    if (!constant.is(0)) print_magnitude(out_, constant, constant.negative() ? " -" : " +", "");
  }

  PtyStream& out_;
  const SymbolTable& names_;
  bool guarded_;
  int key_;
};

}  // namespace

void Exp::print_def(PtyStream& out, const SymbolTable& names) const {
  ExpPrinter(out, names, false, 0).node(*this);
}

void Exp::Iprint_def(PtyStream& out, const SymbolTable& names, int key) {
  ExpPrinter(out, names, true, key).node(*this);
}

void print_exp(Exp* e, const SymbolTable& names) {
  PtyStream out(80);
  ExpPrinter(out, names, true, new_pass_key()).operand(e);
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
