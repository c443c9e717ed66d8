// The whole program as qv text that the reader accepts again unchanged:
// printing, parsing and printing once more gives the same text.
#include <vector>

#include "net/net.h"
#include "support/diagnostics.h"
#include "support/pty_stream.h"

namespace {

/// Consecutive declarations that share a type and a clock: "a, b : int".
struct DeclGroup {
  std::vector<int> names;
  const QvType* type;
  int clock;
};

class ProgramPrinter {
 public:
  ProgramPrinter(Net& net, PtyStream& out) : net_(net), out_(out) {}

  void types() {
    if (!net_.type_names) return;
    line();
    out_.print("type ");
    for (IndexList* t = net_.type_names; t; t = t->next) {
      if (t != net_.type_names) out_.print(", ");
      out_.print("%s", text(t->value));
      const QvType* type = net_.named_type(t->value);
      if (!type->enum_count) continue;
      // The declaration listed the constants from the highest position down.
      out_.print(" = (");
      for (int pos = type->enum_count - 1; pos >= 0; --pos)
        out_.print(pos == type->enum_count - 1 ? "%s" : ", %s", text(type->enum_consts[pos]->name));
      out_.print(")");
    }
    out_.print(";");
  }

  void consts() { section("const", groups(net_.usr_consts, ID_USR_CONST)); }

  void functions() {
    for (IndexList* f = net_.usr_procs; f; f = f->next) {
      FuncInfo* info = net_.func_info(f->value);
      if (!info) continue;  // the name was declared again as something else
      blank_line();
      line();
      net_.write_func_decl(*info, out_);
    }
  }

  void node(bool final_dot) {
    blank_line();
    line();
    out_.print("node %s( ", text(net_.node_name));
    inline_groups(groups(net_.inputs, ID_INPUT));
    out_.print(") returns (");
    inline_groups(groups(net_.outputs, ID_OUTPUT));
    out_.print(");");
    section("var", groups(net_.locals, ID_LOCAL));
    line();
    out_.print("let");
    out_.tab();
    for (IndexList* a = net_.asserts; a; a = a->next) {
      line();
      out_.print("assert ");
      net_.ident_info(a->value)->def->print_def(out_, *net_.strings);
      out_.print(";");
    }
    for (IndexList* list : {net_.outputs, net_.locals})
      for (IndexList* v = list; v; v = v->next) equation(v->value);
    out_.untab();
    line();
    out_.print(final_dot ? "tel." : "tel");
  }

  void end() {
    if (!first_line_) out_.newline();
  }

 private:
  const char* text(int name) const { return net_.strings->text(name); }

  // Every line but the first starts by ending the one before.
  void line() {
    if (!first_line_) out_.newline();
    first_line_ = false;
  }

  void blank_line() {
    if (!first_line_) out_.newline();
  }

  std::vector<DeclGroup> groups(IndexList* names, IdentKind kind) {
    std::vector<DeclGroup> result;
    for (IndexList* n = names; n; n = n->next) {
      const IdentInfo* info = net_.ident_info(n->value);
      if (!info || info->kind != kind) continue;
      if (result.empty() || result.back().type != info->type || result.back().clock != info->clock)
        result.push_back({{}, info->type, info->clock});
      result.back().names.push_back(n->value);
    }
    return result;
  }

  // A clocked item needs its parentheses: "(a, b : int) when c".
  void group(const DeclGroup& g) {
    bool clocked = g.clock != net_.true_name;
    if (clocked) out_.print("(");
    for (size_t i = 0; i < g.names.size(); ++i) out_.print(i ? ", %s" : "%s", text(g.names[i]));
    if (g.type->is_tuple)
      internal_error("file 'net':\nNet::print_program : '%s' is declared with a tuple type\n",
                     text(g.names[0]));
    out_.print(" : %s", text(g.type->name));
    if (clocked) out_.print(") when %s", text(g.clock));
  }

  void inline_groups(const std::vector<DeclGroup>& gs) {
    for (size_t i = 0; i < gs.size(); ++i) {
      if (i) out_.print("; ");
      group(gs[i]);
    }
  }

  // "keyword" alone on its line, then one indented item per line.
  void section(const char* keyword, const std::vector<DeclGroup>& gs) {
    if (gs.empty()) return;
    line();
    out_.print("%s", keyword);
    out_.tab();
    for (const DeclGroup& g : gs) {
      line();
      group(g);
      out_.print(";");
    }
    out_.untab();
  }

  // A tuple equation is written once, at the first name of its left side.
  void equation(int name) {
    const IdentInfo* info = net_.ident_info(name);
    if (!info || !info->def) return;
    const Exp* rhs = info->def;
    const IndexList* names = net_.tuple_names(name);
    bool tuple = names && rhs->op == PROJ_n;
    if (tuple && names->value != name) return;
    line();
    if (tuple) {
      out_.print("(");
      for (const IndexList* n = names; n; n = n->next)
        out_.print(n == names ? "%s" : ", %s", text(n->value));
      out_.print(")");
      rhs = rhs->operand(0);
    } else {
      out_.print("%s", text(name));
    }
    out_.print(" = ");
    rhs->print_def(out_, *net_.strings);
    out_.print(";");
  }

  Net& net_;
  PtyStream& out_;
  bool first_line_ = true;
};

}  // namespace

void Net::print_program(PtyStream& out, bool final_dot) {
  ProgramPrinter p(*this, out);
  p.types();
  p.consts();
  p.functions();
  if (node_name) p.node(final_dot);
  p.end();
}
