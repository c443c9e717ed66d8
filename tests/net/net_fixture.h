// A Net on its own string table, with shorthands for building programs by
// hand and for capturing what a printer writes.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "net/net.h"
#include "support/pty_stream.h"
#include "tests/common/test_io.h"

class NetTest : public ::testing::Test {
 protected:
  int id(const char* text) { return names.intern("%s", text); }
  QvType* named(const char* type) { return net.named_type(id(type)); }
  /// The leaf of a new input on the base clock.
  Exp* input(const char* name, QvType* type) {
    net.add_input(id(name), type, net.true_name);
    return net.ident_info(id(name))->ref;
  }
  Exp* op(OpKind kind, std::vector<Exp*> operands) {
    return net.new_exp(kind, std::move(operands));
  }

  /// Everything `write` prints on a stream of width 80.
  template <typename Write>
  static std::string printed(Write write) {
    std::unique_ptr<PtyStream> out(PtyStream::temporary(80));
    write(*out);
    out->flush();
    return file_text(out->stream());
  }
  std::string def_text(const Exp* e) {
    return printed([&](PtyStream& out) { e->print_def(out, names); });
  }

  SymbolTable names;
  Net net{&names};
};
