// The expression node: one operator occurrence of the program, shared by
// any number of parents. Nodes are made and owned by their Net.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "net/op_kind.h"
#include "support/fract.h"

struct QvType;
class PtyStream;
class SymbolTable;

/// A fresh key for one traversal's per-node data (see Exp::set_mark).
int new_pass_key();

struct Exp {
  /// Type of the node's value; null = not yet computed (see Net::type).
  QvType* type = nullptr;
  /// String number of the clock identifier; -1 = not yet computed.
  int clock = -1;
  /// Pass key of the last traversal that finished this node.
  int visit_key = 0;
  /// (key, value) pairs in descending key order.
  std::vector<std::pair<int, std::intptr_t>> marks;
  /// Equivalence class from minimal network generation, from 1; 0 = none.
  int class_no = 0;
  /// String number of the node's identifier; 0 = anonymous.
  int ident = 0;
  OpKind op = ERROR_n;
  std::vector<Exp*> operands;
  /// PROJ_n: 1-based member position; CALL_n: function's string number.
  int param = 0;
  /// ICL_n only.
  std::vector<int> icoefs;
  int iconst = 0;
  /// RCL_n only.
  std::vector<Fract> rcoefs;
  Fract rconst;

  int arity() const { return static_cast<int>(operands.size()); }
  Exp* operand(int i) const { return operands[i]; }

  /// The value stored under `key`, or 0.
  std::intptr_t get_mark(int key) const;
  /// Overwrites or inserts, keeping keys in descending order.
  void set_mark(int key, std::intptr_t value);

  int projection_order() const;
  int function_name() const;

  /// Writes the expression as qv text (anonymous operands recursively).
  void print_def(PtyStream& out, const SymbolTable& names) const;
  /// As print_def, but cuts cycles of anonymous nodes using marks under `key`.
  void Iprint_def(PtyStream& out, const SymbolTable& names, int key);
};

/// Prints one expression on standard output with the recursion guard.
void print_exp(Exp* e, const SymbolTable& names);
