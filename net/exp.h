// The expression node: one operator occurrence of the program, shared by
// any number of parents. Nodes are made and owned by their Net.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "net/op_kind.h"
#include "support/fract.h"
#include "support/small_nodes.h"

struct Exp;
struct QvType;
class PtyStream;
class SymbolTable;

/// A fresh key for one traversal's per-node data (see Exp::set_mark).
int new_pass_key();

/// The operands of a node: a view of an array its Net holds, the count
/// stored in the word before the first operand. Many nodes may view the
/// same array.
class Operands {
 public:
  Operands() = default;
  /// `array` has room for the count and then `count` operands.
  Operands(Exp** array, size_t count) : data_(count ? array + 1 : nullptr) {
    if (count) array[0] = reinterpret_cast<Exp*>(count);
  }

  size_t size() const { return data_ ? reinterpret_cast<size_t>(data_[-1]) : 0; }
  bool empty() const { return data_ == nullptr; }
  Exp** data() const { return data_; }
  Exp** begin() const { return data_; }
  Exp** end() const { return data_ + size(); }
  Exp*& operator[](size_t i) const { return data_[i]; }

 private:
  Exp** data_ = nullptr;
};

/// The (key, value) pairs of one node, in descending key order. A node
/// seldom holds more than one, so they are a list, copied with the node.
class MarkList {
 public:
  MarkList() = default;
  MarkList(const MarkList& other) { *this = other; }
  MarkList(MarkList&& other) noexcept : head_(std::exchange(other.head_, nullptr)) {}
  MarkList& operator=(const MarkList& other);
  MarkList& operator=(MarkList&& other) noexcept {
    std::swap(head_, other.head_);
    return *this;
  }
  // Most nodes never hold a mark: freeing a million of them should not
  // cost a million calls.
  ~MarkList() {
    if (head_) clear();
  }

  /// The value stored under `key`, or 0.
  std::intptr_t get(int key) const;
  /// Overwrites or inserts, keeping keys in descending order.
  void set(int key, std::intptr_t value);
  size_t size() const;

 private:
  struct Mark : FromSmallNodes<Mark> {
    Mark(int key, std::intptr_t value, Mark* next) : key(key), value(value), next(next) {}
    int key;
    std::intptr_t value;
    Mark* next;
  };
  void clear();

  Mark* head_ = nullptr;
};

/// Coefficients of the linear forms RCL_n and ICL_n, which no other node has.
struct LinearForm {
  /// ICL_n only.
  std::vector<int> icoefs;
  int iconst = 0;
  /// RCL_n only.
  std::vector<Fract> rcoefs;
  Fract rconst;
};

/// Keeps a linear form for the life of the process; returns its number.
/// Few nodes have one, so it is not worth a field in every node.
int keep_linear_form(LinearForm form);

struct Exp {
  /// Type of the node's value; null = not yet computed (see Net::type).
  QvType* type = nullptr;
  Operands operands;
  MarkList marks;
  /// String number of the clock identifier; -1 = not yet computed.
  int clock = -1;
  /// Equivalence class from minimal network generation, from 1; 0 = none.
  int class_no = 0;
  /// String number of the node's identifier; 0 = anonymous.
  int ident = 0;
  /// PROJ_n: 1-based member position; CALL_n: function's string number;
  /// RCL_n and ICL_n: the number of the linear form, from 1 (0 = none).
  int param = 0;
  OpKind op = ERROR_n;
  /// Key of the last pass that visited the node (see new_pass_key); it
  /// fills what would be padding.
  int visit_key = 0;

  int arity() const { return static_cast<int>(operands.size()); }
  Exp* operand(int i) const { return operands[i]; }

  /// The value stored under `key`, or 0.
  std::intptr_t get_mark(int key) const { return marks.get(key); }
  void set_mark(int key, std::intptr_t value) { marks.set(key, value); }

  /// The coefficients of an RCL_n or ICL_n node, or null.
  const LinearForm* linear_form() const;
  int projection_order() const;
  int function_name() const;

  /// Writes the expression as qv text (anonymous operands recursively).
  void print_def(PtyStream& out, const SymbolTable& names) const;
  /// As print_def, but cuts cycles of anonymous nodes using marks under `key`.
  void Iprint_def(PtyStream& out, const SymbolTable& names, int key);
};

/// Prints one expression on standard output with the recursion guard.
void print_exp(Exp* e, const SymbolTable& names);
