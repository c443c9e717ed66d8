// A singly linked list of positive ints whose head caches a pointer toward
// the tail, so that joining lists never walks along `next`.
#pragma once

#include "support/small_nodes.h"

class IndexList : public FromSmallNodes<IndexList> {
 public:
  /// The `n` values in order; `n` is at least 1.
  IndexList(const int* values, int n);
  explicit IndexList(int value) : IndexList(&value, 1) {}
  IndexList(const IndexList&) = delete;
  IndexList& operator=(const IndexList&) = delete;
  /// Frees the whole chain from this node on.
  ~IndexList();

  /// The tail node; shortens the head's cached pointer on the way.
  static IndexList* last(IndexList* list);
  /// Links `b` behind `a` (which then owns it); `b` null changes nothing.
  static void concat(IndexList* a, IndexList* b);
  /// As `concat`, but a null `a` gives `b`.
  static IndexList* join(IndexList* a, IndexList* b);
  static void append(IndexList** head, int value);
  static int length(const IndexList* list);
  /// Stores the value of node `n` (0-based) and returns 0; returns 1 when short.
  static int nth(const IndexList* list, int n, int* value);
  static bool equal(const IndexList* a, const IndexList* b);
  /// "{ 1, 2, ... }" on standard output, ten values a line.
  static void print(const IndexList* list);

  int value;
  IndexList* next = nullptr;
  /// A node at or after this one on the way to the tail; the tail's is itself.
  IndexList* last_node;
};

/// Walks a list without owning it; `next()` gives 0 at the end.
class IndexListIter {
 public:
  IndexListIter() : sentinel_(0), current_(&sentinel_) { sentinel_.next = nullptr; }
  explicit IndexListIter(IndexList* list) : IndexListIter() { reset(list); }
  IndexListIter(const IndexListIter&) = delete;
  IndexListIter& operator=(const IndexListIter&) = delete;
  ~IndexListIter() { sentinel_.next = nullptr; }

  void reset(IndexList* list) {
    sentinel_.next = list;
    current_ = &sentinel_;
  }
  void rewind() { current_ = &sentinel_; }
  int next() {
    if (!current_->next) return 0;
    current_ = current_->next;
    return current_->value;
  }

 private:
  IndexList sentinel_;
  IndexList* current_;
};
