#include "support/small_nodes.h"

std::pmr::memory_resource& small_nodes() {
#if defined(__SANITIZE_ADDRESS__)
  // The sanitizer sees each record freed on its own only from the general
  // allocator.
  return *std::pmr::new_delete_resource();
#else
  // Never destroyed: records may still be freed by static destructors.
  static auto* pools = new std::pmr::unsynchronized_pool_resource;
  return *pools;
#endif
}
