// A table of slots held in chunks that never move, grown on access, so
// callers may keep slot addresses across growth.
#pragma once

#include <cstdint>
#include <vector>

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
    if (index < capacity) {
      if (index > high) high = index;
      return &slots[index];
    }
    // Programs with a million names index far past the first chunk; the
    // directory of successors makes that a lookup instead of a walk.
    const int ahead = index / capacity;
    while (static_cast<int>(successors_.size()) < ahead) {
      ChunkArray* c = successors_.empty() ? this : successors_.back();
      if (!c->next) {
        c->high = c->capacity - 1;
        c->next = new ChunkArray(c->capacity, c->zeroed, c->base + c->capacity);
      }
      successors_.push_back(c->next);
    }
    ChunkArray* c = successors_[ahead - 1];
    index -= ahead * capacity;
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
  /// successors_[k] is the chunk k + 1 places after this one; not owned.
  std::vector<ChunkArray*> successors_;
};
