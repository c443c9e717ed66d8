// A table of slots held in chunks that never move, grown on access, so
// callers may keep slot addresses across growth.
#pragma once

#include <cstdint>

/// One chunk of a chunked array; the array is its first chunk.
template <typename T>
class ChunkArray {
 public:
  /// A zeroed array starts every slot of every chunk at T{} (0 = no entry);
  /// a plain one leaves slots to the owner, who writes before reading.
  ChunkArray(int capacity, bool zeroed, int base = 0)
      : slots(zeroed ? new T[capacity]() : new T[capacity]),
        capacity(capacity),
        base(base),
        zeroed(zeroed) {}
  ChunkArray(const ChunkArray&) = delete;
  ChunkArray& operator=(const ChunkArray&) = delete;
  ~ChunkArray() {
    // Iterative, so very long arrays do not exhaust the stack.
    ChunkArray* c = next;
    next = nullptr;
    while (c) {
      ChunkArray* after = c->next;
      c->next = nullptr;
      delete c;
      c = after;
    }
    delete[] slots;
  }

  /// The slot at `index` relative to this chunk, creating successors as needed.
  T* chunk_at(int index) {
    ChunkArray* c = this;
    while (index >= c->capacity) {
      if (!c->next) {
        c->high = c->capacity - 1;
        c->next = new ChunkArray(c->capacity, c->zeroed, c->base + c->capacity);
      }
      index -= c->capacity;
      c = c->next;
    }
    if (index > c->high) c->high = index;
    return &c->slots[index];
  }

  T* slots;
  int capacity;
  ChunkArray* next = nullptr;
  /// Highest index (relative to this chunk) accessed so far; -1 when none.
  int high = -1;
  /// Absolute index of this chunk's first slot.
  int base;

 private:
  bool zeroed;
};
