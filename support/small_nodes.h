// Small records made by the million (list cells, node marks) come from
// pools of fixed-size blocks: the general allocator's header and rounding
// would add a third to each.
#pragma once

#include <cstddef>
#include <memory_resource>

/// The process's pools of small records; they are reused once freed and
/// live until the process ends.
std::pmr::memory_resource& small_nodes();

/// Gives a record class its allocation from `small_nodes()`.
template <class Record>
struct FromSmallNodes {
  static void* operator new(size_t size) { return small_nodes().allocate(size, alignof(Record)); }
  static void operator delete(void* p, size_t size) {
    small_nodes().deallocate(p, size, alignof(Record));
  }
};
