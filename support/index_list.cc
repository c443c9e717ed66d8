#include "support/index_list.h"

#include <cstdio>

// Built front to back without recursion: lists of many values are common
// enough that a recursive build would risk the stack.
IndexList::IndexList(const int* values, int n) : value(values[0]), last_node(this) {
  IndexList* tail = this;
  for (int i = 1; i < n; ++i) {
    tail->next = new IndexList(values[i]);
    tail = tail->next;
  }
  for (IndexList* node = this; node != tail; node = node->next) node->last_node = tail;
}

IndexList::~IndexList() {
  IndexList* node = next;
  next = nullptr;
  while (node) {
    IndexList* after = node->next;
    node->next = nullptr;
    delete node;
    node = after;
  }
}

IndexList* IndexList::last(IndexList* list) {
  while (list->last_node->last_node != list->last_node) list->last_node = list->last_node->last_node;
  return list->last_node;
}

void IndexList::concat(IndexList* a, IndexList* b) {
  if (!b) return;
  IndexList* tail = last(a);
  IndexList* b_tail = last(b);
  tail->next = b;
  tail->last_node = b_tail;
  a->last_node = b_tail;
}

IndexList* IndexList::join(IndexList* a, IndexList* b) {
  if (!a) return b;
  concat(a, b);
  return a;
}

void IndexList::append(IndexList** head, int value) { *head = join(*head, new IndexList(value)); }

int IndexList::length(const IndexList* list) {
  int n = 0;
  for (; list; list = list->next) ++n;
  return n;
}

int IndexList::nth(const IndexList* list, int n, int* value) {
  for (; list && n > 0; --n) list = list->next;
  if (!list || n < 0) return 1;
  *value = list->value;
  return 0;
}

bool IndexList::equal(const IndexList* a, const IndexList* b) {
  for (; a && b; a = a->next, b = b->next)
    if (a->value != b->value) return false;
  return !a && !b;
}

void IndexList::print(const IndexList* list) {
  if (!list) {
    fputs("{ }\n", stdout);
    return;
  }
  printf("{ %d", list->value);
  int on_line = 1;
  for (list = list->next; list; list = list->next) {
    if (on_line < 10) {
      printf(", %d", list->value);
      ++on_line;
    } else {
      printf(",\n%d", list->value);
      on_line = 1;
    }
  }
  fputs(" }\n", stdout);
}
