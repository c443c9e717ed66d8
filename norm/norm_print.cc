#include <cstdio>

#include "norm/net_norm.h"
#include "support/diagnostics.h"
#include "support/pty_stream.h"

void NormNet::print() {
  check_normal_form("print");
  PtyStream out(80);
  out.print("\n***********NORMALISATION\n");
  out.print("OUTPUTS :");
  IndexListIter it(outputs);
  for (int name = it.next(); name; name = it.next()) {
    out.newline();
    out.print("%s = ", strings->text(name));
    held_def[name]->print_def(out, *strings);
  }
  out.newline();
  out.print("LOCALS :");
  it.reset(locals);
  for (int name = it.next(); name; name = it.next()) {
    out.newline();
    out.print("%s = ", strings->text(name));
    xdef[name]->print_def(out, *strings);
  }
  out.newline();
  out.print("ASSERTIONS :");
  it.reset(asserts);
  for (int name = it.next(); name; name = it.next()) {
    out.newline();
    out.print("assert ");
    held_def[name]->print_def(out, *strings);
  }
  out.newline();
}

void NormNet::print_classes() {
  check_normal_form("print_classes");
  for (int i = 1; i <= n_classes; ++i) {
    std::printf("classe @%d <=> ", i);
    print_class(through_ref(class_lists[i - 1]->node));
    std::printf("\n");
  }
  std::fflush(stdout);
}

void NormNet::print_class(Exp* node) {
  const auto operand = [this](const Exp* o) {
    if (o->class_no != 0) {
      std::printf("@%d", o->class_no);
    } else {
      std::printf("%s", strings->text(o->ident));
    }
  };
  const auto list = [&](const Operands& operands) {
    for (size_t i = 0; i < operands.size(); ++i) {
      if (i > 0) std::printf(", ");
      operand(operands[i]);
    }
  };
  const OpKind kind = node->op;
  switch (op_arity(kind)) {
    case AR_UNARY:
      std::printf("%s(", op_symbol(kind));
      operand(node->operand(0));
      std::printf(")");
      return;
    case AR_BINARY:
      std::printf("(");
      operand(node->operand(0));
      std::printf(")%s(", op_symbol(kind));
      operand(node->operand(1));
      std::printf(")");
      return;
    case AR_IF:
      std::printf(" if (");
      operand(node->operand(0));
      std::printf(") then (");
      operand(node->operand(1));
      std::printf(") else (");
      operand(node->operand(2));
      std::printf(")");
      return;
    case AR_NARY:
      std::printf("%s(", op_symbol(kind));
      list(node->operands);
      std::printf(")");
      return;
    case AR_PARAM:
      // ORDER OP: the kinds with a form of their own.
      if (kind == CALL_n) {
        Exp* argument = node->operand(0);
        std::printf("%s(", strings->text(node->param));
        list(argument->op == TUPLE_n ? argument->operands : node->operands);
        std::printf(")");
        return;
      }
      if (kind == PROJ_n) {
        std::printf("proj_%d(", node->param);
        operand(node->operand(0));
        std::printf(")");
        return;
      }
      break;
    case AR_BLANK:
    case AR_LEAF:
    case AR_LINEAR:
      break;
  }
  internal_error("file 'net_norm':\nNormNet::print_class '%s' is not implemented\n", op_name(kind));
}
