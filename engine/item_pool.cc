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

EvalItem** ItemPool::operand_room(int n) {
  if (n <= 2) return nullptr;
  auto** room = static_cast<EvalItem**>(allocate(sizeof(EvalItem*) * static_cast<size_t>(n)));
  std::fill_n(room, n, nullptr);
  return room;
}

void ItemPool::release_unkept() {
  arenas_[0] = Arena{};
  items_.assign(kept_.begin(), kept_.end());
  std::vector<EvalItem*>().swap(kept_);
  released_ = true;
}

void* ItemPool::allocate(size_t bytes) {
  static_assert(alignof(EvalItem) <= alignof(std::max_align_t));
  bytes = (bytes + alignof(EvalItem) - 1) / alignof(EvalItem) * alignof(EvalItem);
  Arena& a = arenas_[keeping_];
  if (bytes > a.left) {
    const size_t size = std::max(bytes, kBlockBytes);
    a.cursor = a.blocks.emplace_back(new std::byte[size]).get();
    a.left = size;
  }
  void* at = a.cursor;
  a.cursor += bytes;
  a.left -= bytes;
  return at;
}
