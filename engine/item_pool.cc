#include "engine/item_pool.h"

#include <algorithm>

namespace {

#if defined(__SANITIZE_ADDRESS__)
// The sanitizer sees a read past an item only at the end of an allocation.
constexpr size_t kBlockBytes = 0;
#else
constexpr size_t kBlockBytes = size_t{1} << 20;
#endif

}  // namespace

ItemPool::~ItemPool() {
  for (EvalItem* item : items_) item->~EvalItem();
}

EvalItem** ItemPool::operand_room(int n) {
  if (n <= 2) return nullptr;
  auto** room = static_cast<EvalItem**>(allocate(sizeof(EvalItem*) * static_cast<size_t>(n)));
  std::fill_n(room, n, nullptr);
  return room;
}

void* ItemPool::allocate(size_t bytes) {
  static_assert(alignof(EvalItem) <= alignof(std::max_align_t));
  bytes = (bytes + alignof(EvalItem) - 1) / alignof(EvalItem) * alignof(EvalItem);
  if (bytes > left_) {
    const size_t size = std::max(bytes, kBlockBytes);
    cursor_ = blocks_.emplace_back(new std::byte[size]).get();
    left_ = size;
  }
  void* at = cursor_;
  cursor_ += bytes;
  left_ -= bytes;
  return at;
}
